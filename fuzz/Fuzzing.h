#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <QString>

#include <cstdio>
#include <cstdlib>

//! Ends the process, for the fuzzer to keep the input, unless \a holds.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "Broken: %s\n", what);
    std::abort();
}

//! Text from at most \a bytes of the input; bytes that are no UTF-8 become replacement characters.
inline QString takeText(FuzzedDataProvider &input, std::size_t bytes)
{
    return QString::fromStdString(input.ConsumeRandomLengthString(bytes));
}
