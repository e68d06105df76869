// The stream operators of key sequences: the stored form is whatever the
// front end's sequence object writes.
#include "orvane/accel.h"
#include "orvane/storage.h"

namespace Kf::Accel {

KfPerOStream& operator<<(KfPerOStream& stream, const KeySequence& sequence) {
  sequence.Impl()->Write(stream);
  return stream;
}

KfPerIStream& operator>>(KfPerIStream& stream, KeySequence& sequence) {
  // The front end offers no way to make an empty sequence object, so one is
  // made from a placeholder key and then overwritten by Read.
  AccelKey placeholder(AccelFrontEnd()->CreateKey(0, 0));
  sequence.impl_ = AccelFrontEnd()->CreateKeySequence(placeholder);
  sequence.impl_->Read(stream);
  return stream;
}

}  // namespace Kf::Accel
