#pragma once

#include "record_output/output_file.hpp"
#include "tests/support/test_folder.hpp"

namespace velm {

/// What the tests of a system's files share; the words for failures are the system's own.
class SystemFileTest : public testing::Test {
protected:
    TestFolder test_folder;
    std::filesystem::path folder = test_folder.path;
    std::filesystem::path path = folder / "model.inp";

    [[nodiscard]] std::string content() const { return content_of(path); }

    /// What opening `name`, writing `size` bytes and closing come to: "OPEN: No such file or directory", or "done".
    static std::string outcome(const std::string& name, std::size_t size = 1)
    {
        try {
            SystemFile file;
            file.open(name.c_str());
            file.write(std::string(size, 'x').data(), size);
            file.close();
        } catch (const ExportFailure& failure) {
            return std::string(failure.operation()) + ": " + failure.what();
        }
        return "done";
    }
};

} // namespace velm
