#ifndef EDITOR_CANVAS_NODEIDS_H
#define EDITOR_CANVAS_NODEIDS_H

#include <embeddedhost/model/graphbody.h>

#include <string>
#include <unordered_map>
#include <unordered_set>

/// Gives ids to nodes that are added to a graph. Many in a row take no longer each than one.
class CNodeIds
{
public:
    /// Nodes that are put into the body by other means are not known.
    explicit CNodeIds(embeddedhost::GraphBody const& body);

    /// An id made from the item's name, so that files stay readable.
    std::string TakeFor(std::string const& itemName);
    /// An id like that of the node that is copied.
    std::string TakeLike(std::string const& id);

private:
    std::string Take(std::string const& stem);

    std::unordered_set<std::string> m_Taken;
    /// The smallest number that may be free, by the text before it.
    std::unordered_map<std::string, int> m_Numbers;
};

#endif
