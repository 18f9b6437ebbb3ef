#pragma once

#include <cstdint>
#include <cstring>

// Records taken as whole little-endian numbers, at any address.
namespace vm {

template <class T>
T Load(const void* from) {
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}
template <class T>
void Store(void* to, T value) {
    std::memcpy(to, &value, sizeof value);
}

}  // namespace vm
