// SPDX-License-Identifier: Apache-2.0
#include "sweep/imports.hpp"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

namespace sweep
{
namespace
{

struct Library {
    std::uintptr_t base = 0;
    const ElfW(Dyn) *dynamic = nullptr;
    std::uintptr_t data_begin = 0, data_end = 0; // what stays writable
};

int find_library(dl_phdr_info *info, std::size_t, void *into)
{
    if (info->dlpi_name == nullptr || std::strstr(info->dlpi_name, "libmoxboot.so") == nullptr)
        return 0;
    auto &library = *static_cast<Library *>(into);
    library.base = info->dlpi_addr;
    std::uintptr_t protected_end = 0;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto &segment = info->dlpi_phdr[i];
        const std::uintptr_t begin = info->dlpi_addr + segment.p_vaddr;
        if (segment.p_type == PT_DYNAMIC)
            library.dynamic = reinterpret_cast<const ElfW(Dyn) *>(begin);
        else if (segment.p_type == PT_GNU_RELRO)
            protected_end = begin + segment.p_memsz;
        else if (segment.p_type == PT_LOAD && (segment.p_flags & PF_W) != 0) {
            library.data_begin = begin;
            library.data_end = (begin + segment.p_memsz + 3) / 4 * 4; // within the last page
        }
    }
    if (protected_end > library.data_begin)
        library.data_begin = protected_end;
    library.data_begin = library.data_begin / 4 * 4;
    return 1;
}

const Library &library()
{
    static const Library found = [] {
        Library one;
        if (dl_iterate_phdr(find_library, &one) == 0) {
            std::fprintf(stderr, "the library is not loaded\n");
            std::abort();
        }
        return one;
    }();
    return found;
}

std::uintptr_t value_of(ElfW(Sxword) tag)
{
    for (const auto *entry = library().dynamic; entry->d_tag != DT_NULL; ++entry)
        if (entry->d_tag == tag)
            return entry->d_un.d_val;
    return 0;
}

// The loader leaves some addresses as they stand in the file.
std::uintptr_t address_of(ElfW(Sxword) tag)
{
    const std::uintptr_t value = value_of(tag);
    return value != 0 && value < library().base ? value + library().base : value;
}

#if __SIZEOF_POINTER__ == 8
std::size_t symbol_of(std::uint64_t info)
{
    return ELF64_R_SYM(info);
}
#else
std::size_t symbol_of(std::uint32_t info)
{
    return ELF32_R_SYM(info);
}
#endif

template <typename Relocation>
void collect(std::uintptr_t at, std::size_t bytes, Imports &into)
{
    const auto *symbols = reinterpret_cast<const ElfW(Sym) *>(address_of(DT_SYMTAB));
    const auto *names = reinterpret_cast<const char *>(address_of(DT_STRTAB));
    const auto *relocations = reinterpret_cast<const Relocation *>(at);
    for (std::size_t i = 0; i < bytes / sizeof(Relocation); ++i) {
        const auto &symbol = symbols[symbol_of(relocations[i].r_info)];
        if (symbol.st_name == 0 || symbol.st_shndx != SHN_UNDEF)
            continue;
        auto **slot = reinterpret_cast<void **>(library().base + relocations[i].r_offset);
        if (*slot == nullptr)
            continue; // weak, and nobody brings it
        const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
        const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(slot) / page * page;
        if (mprotect(reinterpret_cast<void *>(begin), page, PROT_READ | PROT_WRITE) != 0)
            std::abort();
        into[names + symbol.st_name].push_back(slot);
    }
}

std::vector<std::uint32_t> &kept()
{
    static std::vector<std::uint32_t> words;
    return words;
}

// Not by memcpy(), which a sanitizer has look at what it has laid between the variables. This file is
// compiled without sanitizers, and so that no loop becomes a memcpy().
void copy_words(void *to, const void *from, std::size_t bytes)
{
    auto *into = static_cast<std::uint32_t *>(to);
    const auto *of = static_cast<const std::uint32_t *>(from);
    for (std::size_t i = 0; i < bytes / sizeof *into; ++i)
        into[i] = of[i];
}

} // namespace

const Imports &imports()
{
    static const Imports all = [] {
        Imports found;
        collect<ElfW(Rela)>(address_of(DT_RELA), value_of(DT_RELASZ), found);
        collect<ElfW(Rel)>(address_of(DT_REL), value_of(DT_RELSZ), found);
        if (value_of(DT_PLTREL) == DT_RELA)
            collect<ElfW(Rela)>(address_of(DT_JMPREL), value_of(DT_PLTRELSZ), found);
        else
            collect<ElfW(Rel)>(address_of(DT_JMPREL), value_of(DT_PLTRELSZ), found);
        return found;
    }();
    return all;
}

void keep_variables()
{
    const Library &of = library();
    kept().resize((of.data_end - of.data_begin) / sizeof(std::uint32_t));
    copy_words(kept().data(), reinterpret_cast<void *>(of.data_begin), of.data_end - of.data_begin);
}

void restore_variables()
{
    const Library &of = library();
    copy_words(reinterpret_cast<void *>(of.data_begin), kept().data(), of.data_end - of.data_begin);
}

void *exported(const char *name)
{
    void *found = dlsym(RTLD_DEFAULT, name);
    if (found == nullptr) {
        std::fprintf(stderr, "the library exports no %s\n", name);
        std::abort();
    }
    return found;
}

} // namespace sweep
