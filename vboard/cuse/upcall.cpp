// SPDX-License-Identifier: Apache-2.0
#include "cuse/upcall.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <numeric>

namespace vboard
{

namespace
{

std::size_t size_of(const std::vector<Piece> &pieces)
{
    return std::accumulate(pieces.begin(), pieces.end(), std::size_t{0},
                           [](std::size_t sum, const Piece &piece) { return sum + piece.size; });
}

// The caller's memory, as far as an upcall has brought it, and what will go there.
class Brought : public Memory
{
  public:
    explicit Brought(std::span<const std::uint8_t> in) : in_(in) {}

    void named(Pieces pieces)
    {
        pieces_ = std::move(pieces);
        out_.assign(size_of(pieces_.written), 0);
        std::size_t at = 0;
        for (const Piece &piece : pieces_.written) {
            if (&piece != &pieces_.written.back())
                static_cast<void>(fetch(piece.address, out_.data() + at, piece.size)); // goes back as it was
            at += piece.size;
        }
    }

    // What is asked for before anything is named stands at the beginning. A piece that has not been brought
    // is the kernel's business: `missing` tells of it.
    int fetch(std::uint64_t address, void *into, std::size_t size) override
    {
        std::size_t at = 0;
        for (const Piece &piece : pieces_.read) {
            if (piece.address == address && piece.size == size)
                break;
            at += piece.size;
        }
        if (at + size > in_.size()) {
            missing_ = true;
            return EFAULT;
        }
        std::memcpy(into, in_.data() + at, size);
        return 0;
    }
    bool missing() const
    {
        return missing_;
    }

    int store(std::uint64_t address, const void *from, std::size_t size) override
    {
        std::size_t at = 0;
        for (const Piece &piece : pieces_.written) {
            if (address >= piece.address && address + size <= piece.address + piece.size) {
                at += static_cast<std::size_t>(address - piece.address);
                std::memcpy(out_.data() + at, from, size);
                filled_ = std::max(filled_, at + size);
                return 0;
            }
            at += piece.size;
        }
        return EFAULT;
    }
    // Up to the last byte that was put there.
    Bytes out()
    {
        out_.resize(filled_);
        return std::move(out_);
    }

  private:
    std::span<const std::uint8_t> in_;
    Pieces pieces_;
    Bytes out_;
    std::size_t filled_ = 0;
    bool missing_ = false;
};

} // namespace

std::variant<AskAgain, Answer> answer_upcall(Board &board, const Upcall &upcall)
{
    Brought memory(upcall.in);
    Pieces pieces = pieces_of(upcall.device, upcall.request, upcall.argument, memory);
    // A caller that changes its request meanwhile is asked for what it says now.
    if (memory.missing() || size_of(pieces.read) != upcall.in.size() ||
        size_of(pieces.written) != upcall.out_size)
        return AskAgain{std::move(pieces)};
    memory.named(std::move(pieces));
    const IoctlResult result =
        run_ioctl(board, upcall.device, upcall.request, upcall.argument, upcall.pid, memory);
    // A kernel cannot fail without an error: a planned result of -1 that names none is the error of that
    // number.
    return Answer{result.result == -1 && result.error != 0 ? -result.error : result.result, memory.out()};
}

} // namespace vboard
