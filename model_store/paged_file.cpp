#include "model_store/paged_file.hpp"

#include <array>
#include <cerrno>
#include <system_error>

namespace velm {
namespace {

constexpr std::size_t most_gathered = std::size_t{1} << 20U;

} // namespace

PagedFile::PagedFile(const std::filesystem::path& file, std::size_t page_size, std::uint64_t pages)
    : stream_(file, std::ios::binary | std::ios::in | std::ios::out), page_size_(page_size), pages_(pages)
{
    check();
    gathered_.reserve(most_gathered);
}

std::uint64_t PagedFile::add_page()
{
    const std::uint64_t locked = (std::uint64_t{1} << 30U) / page_size_ + 1;
    pages_ += pages_ + 1 == locked ? 2 : 1;
    return pages_;
}

void PagedFile::write(std::uint64_t number, std::span<const char> page)
{
    if (number != first_gathered_ + gathered_.size() / page_size_ || gathered_.size() + page_size_ > most_gathered) {
        write_gathered();
        first_gathered_ = number;
    }
    gathered_.insert(gathered_.end(), page.begin(), page.end());
}

void PagedFile::write_gathered()
{
    if (!gathered_.empty()) {
        write_at((first_gathered_ - 1) * page_size_, gathered_);
        gathered_.clear();
    }
}

void PagedFile::write_at(std::uint64_t place, std::span<const char> bytes)
{
    stream_.seekp(static_cast<std::streamoff>(place));
    stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    check();
}

void PagedFile::close()
{
    constexpr std::uint64_t place_of_page_count = 28;
    write_gathered();
    const auto byte = [this](unsigned shift) { return static_cast<char>(pages_ >> shift & 0xFFU); };
    write_at(place_of_page_count, std::array{byte(24), byte(16), byte(8), byte(0)});
    stream_.close();
    check();
}

void PagedFile::check() const
{
    if (!stream_) {
        throw std::system_error(errno, std::generic_category());
    }
}

} // namespace velm
