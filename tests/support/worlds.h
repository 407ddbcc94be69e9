// SPDX-License-Identifier: MIT
// Where a test works: a platform, and a folder on it.
#pragma once

#include "tests/support/fake_platform.h"
#include "tests/support/folder.h"

namespace velmora::test {

struct MemoryWorld {
    MemoryWorld() { platform.files().createFolder(folder.path()); }
    Folder folder{"/basin"};
    FakePlatform platform;
};

// A fixture over platform and folder of a world of its own. (The world comes first, since the
// fixture needs it until its end.)
template <class World>
struct OwnWorld {
    World world;
};

template <class World, class Fixture>
struct In : OwnWorld<World>, Fixture {
    In() : Fixture(this->world.platform, this->world.folder) {}
};

}  // namespace velmora::test
