#include "tool/commands/documents.hpp"

#include "tool/system/operating_system.hpp"

#include <algorithm>

namespace velm {
namespace {

namespace fs = std::filesystem;

fs::path documents_folder()
{
    const fs::path program = executable_directory();
    for (const fs::path& folder : {program / VELM_DOCUMENTS, program / "docs", program / "../../docs"}) {
        if (fs::exists(folder / "model-database.md")) {
            return folder.lexically_normal();
        }
    }
    return {};
}

} // namespace

fs::path document(const std::string& page)
{
    const fs::path folder = documents_folder();
    const fs::path file = folder / (page + ".md");
    return !folder.empty() && fs::exists(file) ? file : fs::path();
}

std::vector<std::string> document_names()
{
    std::vector<std::string> names;
    const fs::path folder = documents_folder();
    if (!folder.empty()) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".md") {
                names.push_back(entry.path().stem().string());
            }
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace velm
