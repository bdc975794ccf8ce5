#pragma once

#include "base/text.h"

namespace orma {

/// The keys that screens know, with their virtual-key codes; a toolkit maps its own onto them.
enum class Key : int {
    kOther = 0,
    kBackspace = 0x08,
    kTab = 0x09,
    kEnter = 0x0D,
    kEscape = 0x1B,
    kSpace = 0x20,
    kPageUp = 0x21,
    kPageDown = 0x22,
    kEnd = 0x23,
    kHome = 0x24,
    kLeft = 0x25,
    kUp = 0x26,
    kRight = 0x27,
    kDown = 0x28,
    kInsert = 0x2D,
    kDelete = 0x2E,
    k0 = 0x30,
    k1,
    k2,
    k3,
    k4,
    k5,
    k6,
    k7,
    k8,
    k9,
    kA = 0x41,
    kZ = kA + 25,
    kF1 = 0x70,
    kPlus = 0xBB,
    kMinus = 0xBD,
    kRecordButton = 0xC1,  // the record key of the device's case; it acts when it is let go
};

/// What stands on the key, for lists of keys; empty for kOther.
[[nodiscard]] Text NameOf(Key key);

}  // namespace orma
