// A temporary tree that is drive C: and also contains the user's settings.
#pragma once

#include <gtest/gtest.h>

#include "tests/TempTree.h"
#include "tests/TestHost.h"
#include "win/paths/Drives.h"

namespace tests {

class TScratch : public TTempTree {
 public:
  static constexpr char kSettings[] = "config/Tarvex/registry.ini";

  TScratch() { EXPECT_TRUE(win::MapDrive('C', HostPath())); }
  ~TScratch() { win::ResetDrives(); }

 private:
  const TVariable FConfig{"XDG_CONFIG_HOME", HostPath("config")};
};

}  // namespace tests
