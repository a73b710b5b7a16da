// SPDX-License-Identifier: Apache-2.0
// A CUSE device has no position of its own: the kernel answers every seek by itself, with 0, and counts the
// offsets of a read or a write from its beginning, for it cuts long ones into pieces. So the position lies
// with the open file here, and a device cannot be sought in.
#include "cuse/operations.hpp"

#include "cuse/upcall.hpp"

#include <algorithm>
#include <cerrno>
#include <sys/uio.h>
#include <system_error>

namespace vboard
{

namespace
{

struct OpenFile {
    int pid = 0;
    std::int64_t position = 0;
    Bytes whole; // what the pieces of the write that goes on have brought so far
};

OpenFile *opened(const fuse_file_info *file)
{
    return reinterpret_cast<OpenFile *>(static_cast<std::uintptr_t>(file->fh));
}

CuseDevice &device_of(fuse_req_t request)
{
    return *static_cast<CuseDevice *>(fuse_req_userdata(request));
}

int caller(fuse_req_t request)
{
    return fuse_req_ctx(request)->pid;
}

std::vector<iovec> vectors(const std::vector<Piece> &pieces)
{
    std::vector<iovec> all;
    all.reserve(pieces.size());
    for (const Piece &piece : pieces)
        all.push_back({reinterpret_cast<void *>(static_cast<std::uintptr_t>(piece.address)), piece.size});
    return all;
}

// A 32-bit process of ours cannot even name what lies beyond its own addresses.
bool in_reach(const std::vector<Piece> &pieces)
{
    return std::ranges::all_of(pieces, [](const Piece &piece) {
        return piece.address + piece.size <= UINTPTR_MAX && piece.address + piece.size >= piece.address;
    });
}

void ask_again(fuse_req_t request, const Pieces &pieces)
{
    if (!in_reach(pieces.read) || !in_reach(pieces.written)) {
        fuse_reply_err(request, EFAULT);
        return;
    }
    const std::vector<iovec> read = vectors(pieces.read), written = vectors(pieces.written);
    fuse_reply_ioctl_retry(request, read.data(), read.size(), written.data(), written.size());
}

// A fault that is told to take its time must not hold up those who use the device, too.
bool may_take_time(const Board &board)
{
    const std::vector<Fault> faults = board.faults();
    return std::ranges::any_of(faults, [](const Fault &fault) { return fault.delay_ms != 0; });
}

} // namespace

void CuseDevice::Operations::init_done(void *device)
{
    static_cast<CuseDevice *>(device)->there_ = true;
}

void CuseDevice::Operations::open(fuse_req_t request, fuse_file_info *file)
{
    CuseDevice &device = device_of(request);
    const int pid = caller(request);
    if (const int error = device.board_.open(device.path_, file->flags, pid); error != 0) {
        fuse_reply_err(request, error);
        return;
    }
    auto *state = new OpenFile{pid, 0, {}};
    file->fh = reinterpret_cast<std::uintptr_t>(state);
    if (fuse_reply_open(request, file) == 0)
        return;
    device.board_.close(device.path_, pid); // the caller is gone, and the kernel will not say so
    delete state;
}

void CuseDevice::Operations::release(fuse_req_t request, fuse_file_info *file)
{
    CuseDevice &device = device_of(request);
    const OpenFile *state = opened(file);
    device.board_.close(device.path_, state->pid);
    delete state;
    fuse_reply_err(request, 0);
}

void CuseDevice::Operations::read(fuse_req_t request, std::size_t size, off_t, fuse_file_info *file)
{
    CuseDevice &device = device_of(request);
    const IoResult result = device.board_.read(device.path_, size, caller(request), &opened(file)->position);
    if (result.result < 0)
        fuse_reply_err(request, result.error);
    else
        fuse_reply_buf(request, reinterpret_cast<const char *>(result.data.data()), result.data.size());
}

// A piece that is not the first goes on with the write before it: the board gets all of it once more, for
// what makes a whole for a device must arrive as a whole.
void CuseDevice::Operations::write(fuse_req_t request, const char *data, std::size_t size, off_t offset,
                                   fuse_file_info *file)
{
    CuseDevice &device = device_of(request);
    OpenFile &state = *opened(file);
    const auto before = std::min(static_cast<std::size_t>(offset), state.whole.size());
    state.whole.resize(before);
    state.whole.insert(state.whole.end(), data, data + size);
    const IoResult result = device.board_.write(device.path_, state.whole, caller(request), &state.position);
    const auto taken = static_cast<std::size_t>(std::max<std::int64_t>(result.result, 0));
    if (result.result < 0)
        fuse_reply_err(request, result.error);
    else
        fuse_reply_write(request, std::min(size, taken - std::min(taken, before)));
}

void CuseDevice::Operations::ioctl(fuse_req_t request, int number, void *argument, fuse_file_info *, unsigned,
                                   const void *in, std::size_t in_size, std::size_t out_size)
{
    CuseDevice &device = device_of(request);
    const auto *first = static_cast<const std::uint8_t *>(in);
    const auto answer = [&device, request, number, argument, pid = caller(request),
                         out_size](std::span<const std::uint8_t> brought) {
        const Upcall upcall{device.path_,
                            static_cast<std::uint32_t>(number),
                            reinterpret_cast<std::uintptr_t>(argument),
                            pid,
                            brought,
                            out_size};
        const auto outcome = answer_upcall(device.board_, upcall);
        if (const auto *again = std::get_if<AskAgain>(&outcome)) {
            ask_again(request, again->pieces);
            return;
        }
        device.asked_(upcall.request);
        const auto &end = std::get<Answer>(outcome);
        fuse_reply_ioctl(request, end.result, end.out.data(), end.out.size());
    };
    if (may_take_time(device.board_)) {
        ++device.slow_;
        try {
            std::thread([answer, &device, brought = Bytes(first, first + in_size)] {
                answer(brought);
                --device.slow_;
            }).detach();
            return;
        } catch (const std::system_error &) {
            --device.slow_; // out of threads: the others have to wait
        }
    }
    answer({first, in_size});
}

} // namespace vboard
