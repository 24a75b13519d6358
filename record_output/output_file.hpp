#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>

namespace velm {

/// Ends an export: what was being done and why it could not be, in words. Holds its text itself, so that it can be
/// thrown when storage is short.
class ExportFailure : public std::exception {
public:
    static constexpr std::size_t message_room = 256;

    /// `operation` is a literal: "OPEN", "WRITE", "CLOSE" or "EXPORT". A longer message is cut.
    ExportFailure(const char* operation, const char* message) noexcept;

    [[nodiscard]] const char* operation() const noexcept { return operation_; }
    [[nodiscard]] const char* what() const noexcept override { return message_; }

private:
    const char* operation_;
    char message_[message_room]{};
};

/// The file that an export writes: the seam to the file system. Bytes go to it in large blocks, from the first to
/// the last. All three operations throw ExportFailure; after one has failed only let_go follows.
class OutputFile {
public:
    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    OutputFile(OutputFile&&) = delete;
    OutputFile& operator=(OutputFile&&) = delete;
    virtual ~OutputFile() = default;

    /// Creates the file, or empties an existing one. `path` is in the file system's own encoding.
    virtual void open(const char* path) = 0;
    /// Appends all `size` bytes.
    virtual void write(const char* bytes, std::size_t size) = 0;
    /// Closes the file; it holds all that was written once this returns.
    virtual void close() = 0;
    /// Closes the file if it is still open, whatever the system says to that; it can then be opened again.
    virtual void let_go() noexcept {}
};

/// A file of the operating system. No signal that a failing write raises (a reader gone, a size limit) reaches the
/// process; the failure is thrown instead.
class SystemFile final : public OutputFile {
public:
    SystemFile() = default;
    SystemFile(const SystemFile&) = delete;
    SystemFile& operator=(const SystemFile&) = delete;
    SystemFile(SystemFile&&) = delete;
    SystemFile& operator=(SystemFile&&) = delete;
    ~SystemFile() override { SystemFile::let_go(); }

    void open(const char* path) override;
    void write(const char* bytes, std::size_t size) override;
    void close() override;
    void let_go() noexcept override;

private:
    static constexpr std::intptr_t none = -1;
    std::intptr_t handle_ = none;
};

/// Writes to the process's standard error stream and ignores failures: there is nobody left to tell.
void write_to_standard_error(const char* text) noexcept;

} // namespace velm
