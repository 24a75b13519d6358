import js from "@eslint/js";
import globals from "globals";

export default [
    js.configs.recommended,
    {
        languageOptions: { ecmaVersion: 2022, sourceType: "module", globals: globals.browser },
        rules: { "no-var": "error", "prefer-const": "error", eqeqeq: "error", "no-eval": "error", "no-implied-eval": "error",
            "no-restricted-properties": ["error", { property: "innerHTML", message: "Texts are data: make text nodes." },
                { property: "outerHTML", message: "Texts are data: make text nodes." }],
            "no-restricted-syntax": ["error", "CallExpression[callee.property.name='insertAdjacentHTML']"],
            complexity: ["error", 20], "max-lines-per-function": ["error", 110] },
    },
    { files: ["build.mjs"], languageOptions: { globals: globals.node } },
];
