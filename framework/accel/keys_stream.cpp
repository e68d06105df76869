// The stream operators of key sequences: the stored form is whatever the
// front end's sequence object writes.
#include "accel/sequence_objects.h"
#include "orvane/accel.h"
#include "orvane/storage.h"

namespace Kf::Accel {

KfPerOStream& operator<<(KfPerOStream& stream, const KeySequence& sequence) {
  sequence.impl_->Write(stream);
  return stream;
}

KfPerIStream& operator>>(KfPerIStream& stream, KeySequence& sequence) {
  // The front end offers no way to make an empty sequence object, so one is
  // made from a placeholder key and then overwritten by Read. The previous
  // object is not deleted; if copies share it, this handle's claim is dropped.
  AccelKey placeholder(AccelFrontEnd()->CreateKey(0, 0));
  Detail::ForgetSequenceObject(sequence.impl_);
  sequence.impl_ = AccelFrontEnd()->CreateKeySequence(placeholder);
  if (sequence.impl_) sequence.impl_->Read(stream);
  return stream;
}

}  // namespace Kf::Accel
