#ifndef EDITOR_CANVAS_NODELOOKS_H
#define EDITOR_CANVAS_NODELOOKS_H

#include "nodelook.h"

#include <datamodel.h>
#include <embeddedhost/model/graphbody.h>

#include <QPixmap>

#include <map>
#include <string>
#include <vector>

class CEmbeddedHost;

/// Makes the looks of a compound's nodes from their items in the library. Looks of items are
/// cached until Forget.
class NodeLooks
{
public:
    explicit NodeLooks(CEmbeddedHost& host);

    /// To be called when items may have changed.
    void Forget();
    /// The nodes of the body and, where it has inputs or outputs, those that stand for them at
    /// the sides. Ports that connections name and items lack are added, so that these
    /// connections are seen too.
    std::vector<NodeLook> Make(embeddedhost::GraphBody const& body);
    /// Empty for an unknown type.
    std::string const& GetTypeName(std::string const& type);

    /// The look of the item's nodes, without id and position.
    NodeLook const& GetItemLook(std::string const& item);

private:
    NodeLook MakeItemLook(std::string const& item);
    std::vector<PortLook> MakePorts(std::vector<embeddedhost::GraphPort> const& ports);
    NodeLook MakePortsLook(eNodeKind kind, std::vector<embeddedhost::GraphPort> const& ports);
    void AddPortsNodes(embeddedhost::GraphBody const& body, std::vector<NodeLook>& looks);
    QPixmap GetIcon(char const* resource);

    CEmbeddedHost& m_Host;
    std::map<std::string, NodeLook> m_ItemLooks;
    std::map<std::string, std::string> m_TypeNames;
    std::map<std::string, QPixmap> m_Icons;
};

#endif
