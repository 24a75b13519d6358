#include "model_check/report.hpp"

#include "model_check/rules.hpp"
#include "model_store/model_store.hpp"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace velm {
namespace {

constexpr FindingRule repeats{"V204", "time repeats", Level::warning, "keep one pair for each time"};
constexpr FindingRule digits{"V301", "digits lost", Level::note, "nothing"};

/// Two files, the second with a remedy of the case.
std::string reported(std::unique_ptr<FindingReport> (*make)(std::ostream&))
{
    std::ostringstream out;
    const std::unique_ptr<FindingReport> report = make(out);
    FileFindings input;
    const OnFinding tell = [&](const Finding& finding) { report->add(finding); };
    report->begin_file("unreadable.db", true);
    report->begin_file("a river.inp", false);
    FindingList list(input, 1, tell);
    list.add({.rule = &repeats,
              .address = {"load_value", "time", {1, 1, 2}},
              .place = {12, 3},
              .section = "loads",
              .message = "time 1 follows 1"});
    list.add({.rule = &repeats, .message = "unlisted"});
    list.count(digits, 5);
    input.remarks = {"nothing is said of flows"};
    report->end_file(input);
    FileFindings database;
    report->begin_file("b.db", true);
    FindingList(database, 1, tell)
        .add(database_finding({"segment", "volume", {2}}, "\"", "is not a number", "store a number"));
    report->end_file(database);
    report->end();
    return out.str();
}

TEST(Report, Text)
{
    EXPECT_EQ(reported([](std::ostream& out) { return text_report(out); }),
              "a river.inp:12:3: warning V204 time repeats: loads, system 1, load 1, pair 2, time: time 1 follows 1; "
              "keep one pair for each time\n"
              "a river.inp: and 1 more of V204 time repeats\n"
              "a river.inp: 5 of V301 digits lost\n"
              "b.db: error V401 database row: table segment, segment 2, column volume: '\"' is not a number; store a "
              "number\n");
}

TEST(Report, Json)
{
    EXPECT_EQ(reported(json_report), R"({
  "files": [
    {
      "file": "a river.inp",
      "kind": "input file",
      "findings": [
        {
          "code": "V204",
          "name": "time repeats",
          "level": "warning",
          "message": "time 1 follows 1",
          "remedy": "keep one pair for each time",
          "line": 12,
          "column": 3,
          "section": "loads",
          "field": "system 1, load 1, pair 2, time",
          "table": "load_value",
          "row": "system 1, load 1, pair 2",
          "table_column": "time"
        }
      ],
      "counts": {
        "V204": 2,
        "V301": 5
      },
      "remarks": [
        "nothing is said of flows"
      ]
    },
    {
      "file": "b.db",
      "kind": "model database",
      "findings": [
        {
          "code": "V401",
          "name": "database row",
          "level": "error",
          "message": "'\"' is not a number",
          "remedy": "store a number",
          "table": "segment",
          "row": "segment 2",
          "table_column": "volume",
          "value": "\""
        }
      ],
      "counts": {
        "V401": 1
      },
      "remarks": []
    }
  ]
}
)");
}

TEST(Report, DocumentAndTableOfRulesAgree)
{
    std::ifstream file(VELM_FINDINGS_DOCUMENT);
    std::string document;
    std::string headings;
    std::string expected;
    for (std::string line; std::getline(file, line);) {
        headings += line.starts_with("### V") ? line.substr(4) + '\n' : "";
        document += line + ' ';
    }
    for (const FindingRule* const rule : finding_rules()) {
        expected +=
            std::string(rule->code) + ' ' + std::string(rule->name) + " (" + std::string(name_of(rule->level)) + ")\n";
        EXPECT_NE(document.find("*Remedy:* " + std::string(rule->remedy) + "."), std::string::npos) << rule->code;
    }
    EXPECT_EQ(headings, expected);
}

} // namespace
} // namespace velm
