// Ownership of key-sequence objects shared by handle copies (keys.cpp).
#pragma once

#include "orvane/accel.h"

namespace Kf::Accel::Detail {

// A handle lets go of its object: deleted unless copies still share it.
void ReleaseSequenceObject(KeySequence::IKeySequenceImpl* object);
// Drops a handle's claim on an object that it abandons without deleting it.
void ForgetSequenceObject(const KeySequence::IKeySequenceImpl* object);

}  // namespace Kf::Accel::Detail
