#include "bodies.h"
#include "require.h"

#include "canvas/graphclipboard.h"
#include "canvas/graphedits.h"
#include "canvas/itempayload.h"

#include <QDataStream>
#include <QMimeData>

#include <cstddef>
#include <cstdint>
#include <memory>

using namespace embeddedhost;

namespace {

/// The bytes of one text are the payload; nothing may be around it.
void CheckPayload(QMimeData const& data)
{
    std::string const text = ReadItemPayload(&data);
    if (text.empty())
        return;
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    stream << QString::fromLatin1(text.c_str());
    Require(written == data.data(QString::fromLatin1(kItemMimeType)),
            "a payload that is taken is one text");
    std::string const uid = GetPayloadUid(text);
    Require(uid.size() < text.size() && text.substr(text.size() - uid.size()) == uid,
            "its uid is the end of the text");
}

QString GetClipboardFormat()
{
    std::unique_ptr<QMimeData> const empty(MakeClipboardData(GraphBody()));
    return empty->formats().constFirst();
}

/// Nodes of a body have different ids, and connections are between nodes.
void CheckGraph(GraphBody const& body)
{
    std::set<std::string> ids = {kInputsNode, kOutputsNode};
    for (GraphNode const& node : body.nodes)
        Require(ids.insert(node.id).second, "ids of pasted nodes are unique");
    for (GraphConnection const& connection : body.connections) {
        Require(ids.count(connection.from.node) && ids.count(connection.to.node),
                "pasted connections are between nodes");
    }
}

void CheckClipboard(QMimeData const& data)
{
    QString reason;
    GraphBody const copied = ReadClipboardData(&data, &reason);
    Require(copied.nodes.empty() != reason.isEmpty(), "it is said why there are no nodes");
    std::unique_ptr<QMimeData> const written(MakeClipboardData(copied));
    Require(written && AreEqual(ReadClipboardData(written.get()), copied),
            "a copy is read again the same");

    GraphBody body;
    for (std::size_t times = 1; times <= 2; ++times) {
        auto const pasted = PasteNodes(body, copied, QPointF(1, 1));
        Require(pasted.size() == copied.nodes.size()
                    && body.nodes.size() == times * copied.nodes.size(),
                "all nodes are pasted, beside those that are there");
        CheckGraph(body);
    }
}

} // namespace

/// Data that is dragged onto the canvas or pasted may come from any program.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const bytes(reinterpret_cast<char const*>(data), int(size));
    QMimeData mimeData;
    mimeData.setData(QString::fromLatin1(kItemMimeType), bytes);
    mimeData.setData(GetClipboardFormat(), bytes);
    CheckPayload(mimeData);
    CheckClipboard(mimeData);
    return 0;
}
