// Texts that several parts of the host window share.
#pragma once

namespace desktop {

inline constexpr char kHostTitle[] = "Migration Wizard";
// The section of the settings that belongs to the host window.
inline constexpr char kHostSection[] = "Host Window";

}  // namespace desktop
