#include "orvane/pxxmlnode.h"

#include <pugixml.hpp>

namespace {

pugi::xml_node Wrap(pugi::xml_node_struct* node) { return pugi::xml_node(node); }

PxXmlNode Unwrap(pugi::xml_node node) { return PxXmlNode::FromInternal(node.internal_object()); }

// Element children only: text, comments and declarations are skipped.
pugi::xml_node NextElement(pugi::xml_node node) {
  while (node && node.type() != pugi::node_element) node = node.next_sibling();
  return node;
}

}  // namespace

std::string PxXmlNode::GetName() const { return node_ ? Wrap(node_).name() : std::string(); }

std::string PxXmlNode::GetText() const { return node_ ? Wrap(node_).text().get() : std::string(); }

bool PxXmlNode::SetText(const std::string& text) { return node_ && Wrap(node_).text().set(text.c_str()); }

std::string PxXmlNode::GetAttribute(const std::string& name) const {
  return node_ ? Wrap(node_).attribute(name.c_str()).value() : std::string();
}

bool PxXmlNode::HasAttribute(const std::string& name) const {
  return node_ && Wrap(node_).attribute(name.c_str());
}

bool PxXmlNode::SetAttribute(const std::string& name, const std::string& value) {
  if (!node_ || name.empty()) return false;
  pugi::xml_node node = Wrap(node_);
  pugi::xml_attribute attribute = node.attribute(name.c_str());
  if (!attribute) attribute = node.append_attribute(name.c_str());
  return attribute && attribute.set_value(value.c_str());
}

PxXmlNode PxXmlNode::GetChild(const std::string& name) const {
  return node_ ? Unwrap(Wrap(node_).child(name.c_str())) : PxXmlNode();
}

PxXmlNode PxXmlNode::GetOrAppendChild(const std::string& name) {
  PxXmlNode child = GetChild(name);
  return child.IsEmpty() ? AppendChild(name) : child;
}

PxXmlNode PxXmlNode::AppendChild(const std::string& name) {
  if (!node_ || name.empty()) return PxXmlNode();
  return Unwrap(Wrap(node_).append_child(name.c_str()));
}

PxXmlNode PxXmlNode::FirstChild() const {
  return node_ ? Unwrap(NextElement(Wrap(node_).first_child())) : PxXmlNode();
}

PxXmlNode PxXmlNode::NextSibling() const {
  return node_ ? Unwrap(NextElement(Wrap(node_).next_sibling())) : PxXmlNode();
}

PxXmlNode PxXmlNode::GetParent() const {
  if (!node_) return PxXmlNode();
  pugi::xml_node parent = Wrap(node_).parent();
  return parent.type() == pugi::node_element ? Unwrap(parent) : PxXmlNode();
}

std::vector<PxXmlNode> PxXmlNode::GetChildren() const {
  std::vector<PxXmlNode> children;
  for (PxXmlNode child = FirstChild(); !child.IsEmpty(); child = child.NextSibling()) children.push_back(child);
  return children;
}

bool PxXmlNode::RemoveChild(const PxXmlNode& child) {
  if (!node_ || child.IsEmpty() || Wrap(child.node_).parent() != Wrap(node_)) return false;
  return Wrap(node_).remove_child(Wrap(child.node_));
}

void PxXmlNode::RemoveChildren() {
  if (node_) Wrap(node_).remove_children();
}
