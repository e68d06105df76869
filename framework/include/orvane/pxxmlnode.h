// PxXmlNode: a handle to one element of an XML document.
//
// The handle does not own the element: it stays valid while the document that
// holds the element lives and the element is not removed. An empty handle
// (default-constructed, or the result of a failed lookup) is safe to use:
// reads give empty results and changes do nothing and return an empty handle
// or false.
//
//   PxXmlNode root = KfPersistentStorage::GetRootNode();
//   PxXmlNode entry = root.AppendChild("Installation");
//   entry.SetAttribute("InstallDir", "/opt/ide");
//   for (PxXmlNode child = root.FirstChild(); !child.IsEmpty(); child = child.NextSibling()) ...
//
// Threads: a handle carries no lock. Whoever owns the document decides which
// threads may touch its elements; two handles to one document must not be
// used on different threads at the same time unless that owner serialises them.
#pragma once

#include <string>
#include <vector>

#include "orvane/export.h"

namespace pugi {
struct xml_node_struct;
}

class ORVANE_API PxXmlNode {
 public:
  PxXmlNode() = default;

  bool IsEmpty() const { return node_ == nullptr; }
  explicit operator bool() const { return node_ != nullptr; }

  // The element's name; empty for an empty handle.
  std::string GetName() const;
  // The element's text content (its first text child), or empty.
  std::string GetText() const;
  // Replaces the element's text content.
  bool SetText(const std::string& text);

  // An attribute's value, or empty when the attribute is missing.
  std::string GetAttribute(const std::string& name) const;
  bool HasAttribute(const std::string& name) const;
  bool SetAttribute(const std::string& name, const std::string& value);

  // The first child element with that name, or an empty handle.
  PxXmlNode GetChild(const std::string& name) const;
  // The first child element with that name, appended when there is none.
  PxXmlNode GetOrAppendChild(const std::string& name);
  PxXmlNode AppendChild(const std::string& name);
  // The first child element, the next sibling element, the parent element.
  PxXmlNode FirstChild() const;
  PxXmlNode NextSibling() const;
  PxXmlNode GetParent() const;
  // Every child element, in document order.
  std::vector<PxXmlNode> GetChildren() const;

  // Removes a child element (with everything below it); false when `child`
  // is not a child of this element.
  bool RemoveChild(const PxXmlNode& child);
  // Removes every child (elements and text).
  void RemoveChildren();

  // Two handles are equal when they name the same element (or are both empty).
  friend bool operator==(const PxXmlNode& a, const PxXmlNode& b) { return a.node_ == b.node_; }

  // For the library's own code, which keeps its documents in pugixml.
  static PxXmlNode FromInternal(pugi::xml_node_struct* node) {
    PxXmlNode result;
    result.node_ = node;
    return result;
  }
  pugi::xml_node_struct* Internal() const { return node_; }

 private:
  pugi::xml_node_struct* node_ = nullptr;
};
