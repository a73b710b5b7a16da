// SPDX-License-Identifier: Apache-2.0
// The functions that stand between the library and what it calls.
#pragma once

#include "sweep/faults.hpp"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <span>
#include <type_traits>

namespace sweep
{

// ---- what they ask of the watch --------------------------------------------------------------------------

// Counts a call; what comes back is how it fails.
std::optional<Fault> ask(const char *function);
// Ends the run: the library has no way back from here.
[[noreturn]] void leave();
// The library sleeps; whoever sleeps too often does so for ever.
void nap();
void allocated(void *block);
void freed(void *block);
void library_opened(int how_many);

// ---- how they are made -----------------------------------------------------------------------------------

struct StandIn {
    const char *symbol; // as the library imports it
    void *function;
    void **next; // where the function behind it is noted
};
std::span<const StandIn> stand_ins();

// From now on the library reads this file for the mount table; null: the kernel's.
void use_mounts(const char *file);

// A text as a template's argument.
template <std::size_t size>
struct Name {
    char text[size];
    consteval Name(const char (&given)[size])
    {
        std::copy_n(given, size, text);
    }
};

template <typename R>
R failed_with(const Fault &fault)
{
    if (fault.error != 0)
        errno = fault.error;
    if constexpr (std::is_pointer_v<R>)
        return reinterpret_cast<R>(fault.result);
    else
        return static_cast<R>(fault.result);
}

// Counts a call of a function with a fixed list of arguments, fails it or hands it on.
template <Name name, typename Function>
struct Between;

template <Name name, typename R, typename... A>
struct Between<name, R(A...)> {
    static inline void *next = nullptr;
    static R hand_on(A... a)
    {
        return reinterpret_cast<R (*)(A...)>(next)(a...);
    }
    static R call(A... a)
    {
        const auto fault = ask(name.text);
        if constexpr (std::is_void_v<R>) {
            hand_on(a...);
        } else {
            if (!fault)
                return hand_on(a...);
            if (works_all_the_same(name.text))
                hand_on(a...);
            return failed_with<R>(*fault);
        }
    }
    // For calls that must not get through: they succeed with 0.
    static R answer(A...)
    {
        const auto fault = ask(name.text);
        if constexpr (!std::is_void_v<R>)
            return fault ? failed_with<R>(*fault) : R{};
    }
};

} // namespace sweep
