#pragma once

#include "record_output/output_file.hpp"

#include <string>
#include <vector>

namespace velm {

/// A file in memory that fails on demand, and says what was done to it.
class ScriptedFile final : public OutputFile {
public:
    /// The operation that fails, counted from 1 over opens, writes and closes; 0 for none.
    int failing_operation = 0;
    std::vector<std::string> operations; ///< "OPEN path", "WRITE", "CLOSE", in order, the failed one included
    std::string content;

    void open(const char* path) override { operate("OPEN", std::string("OPEN ") + path); }
    void write(const char* bytes, std::size_t size) override
    {
        operate("WRITE", "WRITE");
        content.append(bytes, size);
    }
    void close() override { operate("CLOSE", "CLOSE"); }

private:
    void operate(const char* operation, std::string logged)
    {
        operations.push_back(std::move(logged));
        if (static_cast<int>(operations.size()) == failing_operation) {
            throw ExportFailure(operation, "No space left on device");
        }
    }
};

} // namespace velm
