#ifndef PALETTE_ITEMFACTS_H
#define PALETTE_ITEMFACTS_H

#include "nodepalette.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

namespace nodepalette {

/// The facts about an item that texts mention.
struct SItemFacts
{
    Q_DECLARE_TR_FUNCTIONS(SItemFacts)

public:
    QString name;
    QString kind;
    QStringList tags;
    bool isModified = false;
    bool isReadOnly = false;
    /// Name of the data source; empty where the host does not know.
    QString source;
    CNodePalette::SItemDetails details;
    /// The host's text about the object behind the item, with its source-control state; plain or
    /// rich text.
    QString hostText;

    /// Rich text of a tool tip. `tagNote` says why the item is listed, and may be empty.
    QString ToToolTip(QString const& tagNote) const;
    /// One line for a screen reader that has said the name.
    QString ToDescription() const;
};

/// The kind of an item, as a user calls it.
QString DescribeKind(tarno::datamodel::ItemAccessor const& item);

/// Asks the host. `details` are the host's own words.
SItemFacts AskItemFacts(tarno::datamodel::ItemLibraryAccessor const& library,
                        tarno::datamodel::ItemAccessor const& item,
                        std::set<std::string> const& tags,
                        CNodePalette::SItemDetails const& details);

/// The tag that the panel gives every item of the kind; empty for none.
std::string KindTag(tarno::datamodel::ItemID const& id);

/// `facts` has a row for each item of one name: facts for users, the most telling first, and last
/// an identifier that differs for any two items. Picks the facts that set the row apart.
QString PickDifferences(std::vector<QStringList> const& facts, std::size_t row);

/// The name of the data source that the item's object lives in; empty where that is not known.
QString AskDataSource(tarno::datamodel::ItemID const& id);

} // namespace nodepalette

#endif
