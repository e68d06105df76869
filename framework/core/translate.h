// Internal: looking up the library's texts in its message catalogue.
//
// Every text a person may see goes through Tr or TrN so that xgettext finds
// it (the po/ build extracts the keywords Tr and TrN:1,2) and the catalogue
// bound by Kf::Localize::InitIde translates it.
#pragma once

#include <string>

namespace Kf::Detail {

// The gettext text domain of the library's messages.
inline constexpr const char* kTextDomain = "ide";

// The translation of `msgid`, or `msgid` itself when there is none.
std::string Tr(const char* msgid);
// The translation of the singular or plural form chosen by `n`.
std::string TrN(const char* singular, const char* plural, unsigned long n);

// Counts the changes of the library's message language (InitIde, a new
// binding). A text translated under one generation stays valid while the
// generation is unchanged, so callers may cache it.
unsigned CatalogueGeneration();
void CatalogueChanged();

}  // namespace Kf::Detail
