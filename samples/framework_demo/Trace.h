#pragma once

namespace demo {

// With `--trace` on the command line, what happens is written to standard output, one line each; a
// test that drives the program reads it.
void EnableTrace();
void Trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace demo
