#include "tests/support/guarded_storage.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

namespace velm {
namespace {

struct Block {
    char* storage = nullptr; ///< what was asked for
    char* mapping = nullptr;
    std::size_t size = 0; ///< of the mapping
};

bool guarded = false;
std::array<Block, 256> guarded_blocks;

Block* block_at(const void* storage)
{
    auto* const found = std::find_if(guarded_blocks.begin(), guarded_blocks.end(),
                                     [&](const Block& block) { return block.storage == storage; });
    return found == guarded_blocks.end() ? nullptr : &*found;
}

void* guarded_storage(std::size_t size)
{
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    constexpr std::size_t alignment = alignof(std::max_align_t);
    const std::size_t aligned = (size + alignment - 1) / alignment * alignment;
    const std::size_t usable = (aligned + page - 1) / page * page;
    Block* const block = block_at(nullptr);
    void* const mapping = mmap(nullptr, usable + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == nullptr || mapping == MAP_FAILED) { // NOLINT(performance-no-int-to-ptr): the system's own constant
        throw std::bad_alloc();
    }
    char* const start = static_cast<char*>(mapping);
    mprotect(start + usable, page, PROT_NONE);
    *block = {start + usable - aligned, start, usable + page};
    return block->storage;
}

void release(void* storage)
{
    Block* const block = storage == nullptr ? nullptr : block_at(storage);
    if (block == nullptr) {
        std::free(storage);
        return;
    }
    munmap(block->mapping, block->size);
    *block = {};
}

} // namespace

GuardedStorage::GuardedStorage()
{
    guarded = true;
}
GuardedStorage::~GuardedStorage()
{
    guarded = false;
}
std::size_t GuardedStorage::blocks()
{
    return guarded_blocks.size() -
           static_cast<std::size_t>(std::count_if(guarded_blocks.begin(), guarded_blocks.end(),
                                                  [](const Block& block) { return block.storage == nullptr; }));
}
OrdinaryStorage::OrdinaryStorage() : guarded_(std::exchange(guarded, false)) {}
OrdinaryStorage::~OrdinaryStorage()
{
    guarded = guarded_;
}

} // namespace velm

// not inlined: compilers take malloc and delete in one place for a mistake
[[gnu::noinline]] void* operator new(std::size_t size)
{
    if (velm::guarded) {
        return velm::guarded_storage(size);
    }
    if (void* storage = std::malloc(size == 0 ? 1 : size)) {
        return storage;
    }
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* storage) noexcept
{
    velm::release(storage);
}
[[gnu::noinline]] void operator delete(void* storage, std::size_t) noexcept
{
    velm::release(storage);
}
