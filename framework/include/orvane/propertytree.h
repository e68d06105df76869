// KfPropertyTree: the tree of named values that string commands take as
// arguments and return as results, and that list proxies use for their string
// commands. It is Boost.PropertyTree's string tree, so every Boost algorithm
// (get, put, get_child, JSON and XML readers and writers) works on it.
//
// Threads: a plain value; guard shared instances yourself.
#pragma once

#include <boost/property_tree/ptree.hpp>

using KfPropertyTree = boost::property_tree::ptree;
