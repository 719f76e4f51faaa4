// Open files are descriptors here.
#pragma once

#include "services/disk/system_files.h"

namespace services {

inline constexpr int noDescriptor = -1;
static_assert(noFile == OpenFile{noDescriptor});

inline OpenFile openFileOf(int descriptor) {
    return OpenFile{descriptor};
}

inline int descriptorOf(OpenFile file) {
    return static_cast<int>(file);
}

}  // namespace services
