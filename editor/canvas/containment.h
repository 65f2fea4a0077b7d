#ifndef EDITOR_CANVAS_CONTAINMENT_H
#define EDITOR_CANVAS_CONTAINMENT_H

#include <embeddedhost/model/graphbody.h>

#include <functional>
#include <set>
#include <string>

/// Answers with the body of the item that has the uid.
typedef std::function<embeddedhost::GraphBody(std::string const& uid)> BodyOf;

/// The first of the items that is the other one, or has it among its nodes or in the nodes of
/// these, at any depth; null if there is none. Each body is asked for once at most.
std::string const* FindContainer(std::set<std::string> const& items, std::string const& other,
                                 BodyOf const& bodyOf);

#endif
