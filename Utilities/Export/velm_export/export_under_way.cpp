#include "Utilities/Export/velm_export/export_under_way.hpp"

#include <atomic>
#include <cstdint>
#include <unwind.h>

namespace velm {
namespace {

std::atomic<bool> under_way = false;

/// The frame of the export that this thread has begun and not ended; 0 when there is none.
struct BegunExport {
    std::uintptr_t frame = 0;

    ~BegunExport()
    {
        if (frame != 0) {
            under_way = false; // the thread ends, and with it its stack
        }
    }
};
thread_local BegunExport begun;

struct StackWalk {
    std::uintptr_t entry; ///< the function that begins exports
    std::uintptr_t frame; ///< where the export was begun
    int entries = 0;      ///< frames of that function up to there, that of the asking one included
    bool passed = false;  ///< the walk has come up to there
};

_Unwind_Reason_Code look_at(_Unwind_Context* frame, void* context)
{
    auto& walk = *static_cast<StackWalk*>(context);
    walk.entries += _Unwind_GetRegionStart(frame) == walk.entry ? 1 : 0;
    walk.passed = _Unwind_GetCFA(frame) > walk.frame; // the frame's lower end, or on Windows its upper end
    return walk.passed ? _URC_END_OF_STACK : _URC_NO_REASON;
}

/// Whether the export that this thread has begun is gone from its stack for sure. A stack that cannot be walked up to
/// where the export was begun proves nothing.
bool has_been_left(void (*entry)())
{
    StackWalk walk{reinterpret_cast<std::uintptr_t>(entry), begun.frame};
    _Unwind_Backtrace(look_at, &walk);
    return walk.passed && walk.entries < 2;
}

} // namespace

ExportUnderWay::ExportUnderWay(void (*entry)(), const void* frame)
    : permitted_(!under_way.exchange(true) || (begun.frame != 0 && has_been_left(entry)))
{
    if (permitted_) {
        begun.frame = reinterpret_cast<std::uintptr_t>(frame);
    }
}

ExportUnderWay::~ExportUnderWay()
{
    if (permitted_) {
        begun.frame = 0;
        under_way = false;
    }
}

} // namespace velm
