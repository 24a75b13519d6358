#pragma once

namespace velm {

/// Whether an export is under way is asked of the whole process, for the shared model state is one. An object of this
/// class is the export's permission, from its making to its end.
///
/// A host may leave an export without ending it: by longjmp, which passes over the destructor. That export is over
/// when the stack of its thread no longer holds it, which is seen when the thread asks again, or when the thread ends.
class ExportUnderWay {
public:
    /// `entry` is the function that makes the object, and must not be inlined; `frame` is its frame's address.
    ExportUnderWay(void (*entry)(), const void* frame);
    ~ExportUnderWay();
    ExportUnderWay(const ExportUnderWay&) = delete;
    ExportUnderWay& operator=(const ExportUnderWay&) = delete;
    ExportUnderWay(ExportUnderWay&&) = delete;
    ExportUnderWay& operator=(ExportUnderWay&&) = delete;

    /// False: another export is under way, and this one must not begin.
    [[nodiscard]] bool permitted() const { return permitted_; }

private:
    bool permitted_;
};

} // namespace velm
