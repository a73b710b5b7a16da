// SPDX-License-Identifier: Apache-2.0
#include "model/env_store.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stddef.h> // for libuboot.h, which does not include what it needs
#include <stdexcept>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <libuboot.h>

namespace vboard
{

namespace fs = std::filesystem;

namespace
{

using Variables = std::map<std::string, std::string>;

constexpr std::size_t copy_size = 0x4000;
constexpr std::size_t copy_header = 5; // checksum and flag byte

[[noreturn]] void fail(const std::string &what, const std::string &path, int error)
{
    throw std::runtime_error("cannot " + what + " " + path + ": " + std::strerror(error));
}

// The environment in an image file, from its opening to its end.
class Image
{
  public:
    explicit Image(std::string path)
    {
        uboot_env_device copies[2] = {};
        for (std::size_t i = 0; i < 2; ++i) {
            copies[i].devname = path.data();
            copies[i].offset = static_cast<long long>(i) * static_cast<long long>(copy_size);
            copies[i].envsize = copy_size;
        }
        if (libuboot_initialize(&context_, copies) != 0)
            context_ = nullptr;
        // Fails when neither copy is in order; such an image can still be written.
        valid_ = context_ && libuboot_open(context_) == 0;
    }
    ~Image()
    {
        if (context_) {
            libuboot_close(context_);
            libuboot_exit(context_);
        }
    }
    Image(const Image &) = delete;
    Image &operator=(const Image &) = delete;

    bool valid() const
    {
        return valid_;
    }

    Variables variables() const
    {
        Variables all;
        for (void *entry = nullptr; (entry = libuboot_iterator(context_, entry));)
            all[libuboot_getname(entry)] = libuboot_getvalue(entry);
        return all;
    }

    bool store(const Variables &wanted)
    {
        if (!context_)
            return false;
        for (const auto &[name, value] : variables())
            if (!wanted.contains(name) && libuboot_set_env(context_, name.c_str(), nullptr) != 0)
                return false;
        for (const auto &[name, value] : wanted)
            if (libuboot_set_env(context_, name.c_str(), value.c_str()) != 0)
                return false;
        return libuboot_env_store(context_) == 0;
    }

  private:
    uboot_ctx *context_ = nullptr;
    bool valid_ = false;
};

class ImageStore : public EnvStore
{
  public:
    ImageStore(const fs::path &directory, Variables factory)
        : directory_(open(directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)), factory_(std::move(factory))
    {
        if (directory_ < 0)
            fail("use the board's directory", directory.string(), errno);
        try {
            write_config(fs::absolute(directory));
            make_image();
        } catch (...) {
            close(directory_);
            throw;
        }
    }
    ~ImageStore() override
    {
        close(directory_);
    }
    ImageStore(const ImageStore &) = delete;
    ImageStore &operator=(const ImageStore &) = delete;

    Variables load() override
    {
        make_image();
        const Image image(path(env_image_name));
        // As a boot loader does: with no copy in order, the environment is that of a factory-new board.
        return image.valid() ? image.variables() : factory_;
    }

    bool save(const Variables &variables) override
    {
        // Found out here: libubootenv, which would refuse too, loses a block then.
        std::size_t needed = copy_header + 1;
        for (const auto &[name, value] : variables)
            needed += name.size() + value.size() + 2;
        if (needed > copy_size)
            return false;
        return Image(path(env_image_name)).store(variables);
    }

  private:
    // By way of the descriptor: any length of the directory's path is good, and any file tree.
    std::string path(const std::string &name) const
    {
        return "/proc/self/fd/" + std::to_string(directory_) + "/" + name;
    }

    void write_config(const fs::path &directory) const
    {
        char text[2 * 4096 + 64];
        const std::string image = (directory / env_image_name).string();
        std::snprintf(text, sizeof text, "%s 0x0 0x%zx\n%s 0x%zx 0x%zx\n", image.c_str(), copy_size,
                      image.c_str(), copy_size, copy_size);
        replace(env_config_name, text);
    }

    void make_image() const
    {
        struct stat info;
        if (fstatat(directory_, env_image_name, &info, 0) == 0 && info.st_size == 2 * copy_size)
            return;
        // Both copies are made good before the image appears under its name; in memory, where it takes no
        // time.
        const int memory = memfd_create(env_image_name, MFD_CLOEXEC);
        const std::string file = "/proc/self/fd/" + std::to_string(memory);
        std::string bytes(2 * copy_size, '\0');
        const bool made = memory >= 0 && ftruncate(memory, 2 * copy_size) == 0 && store_factory(file) &&
                          store_factory(file) &&
                          pread(memory, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
        const int error = errno;
        if (memory >= 0)
            close(memory);
        if (!made)
            fail("make", std::string(env_image_name) + " of the board", error);
        replace(env_image_name, bytes);
    }

    // An open image holds the library's lock: it must be closed before it is opened once more.
    bool store_factory(const std::string &file) const
    {
        return Image(file).store(factory_);
    }

    // Written beside and renamed. Not flushed: what a power cut spoils here is made anew at the next start.
    void replace(const std::string &name, const std::string &content) const
    {
        const std::string beside = name + ".new";
        const int fd = openat(directory_, beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        const bool good = fd >= 0 &&
                          write(fd, content.data(), content.size()) == static_cast<ssize_t>(content.size()) &&
                          renameat(directory_, beside.c_str(), directory_, name.c_str()) == 0;
        const int error = errno;
        if (fd >= 0)
            close(fd);
        if (!good)
            fail("write", name + " of the board", error);
    }

    int directory_;
    Variables factory_;
};

} // namespace

std::shared_ptr<EnvStore> make_env_store(const fs::path &directory, const Profile &profile)
{
    return std::make_shared<ImageStore>(directory, profile.boot_env);
}

} // namespace vboard
