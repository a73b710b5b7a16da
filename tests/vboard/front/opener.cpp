// SPDX-License-Identifier: Apache-2.0
// A library whose own search path leads to the libraries that it opens; the program that opens it has no such
// path.

extern "C" void *dlopen(const char *path, int flags);

extern "C" void *open_library(const char *name);
void *open_library(const char *name)
{
    // Used afterwards, so that the call is one and does not end this function by a jump.
    void *volatile library = dlopen(name, 2);
    return library;
}
