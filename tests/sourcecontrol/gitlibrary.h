#ifndef NODEBROWSER_TESTS_GITLIBRARY_H
#define NODEBROWSER_TESTS_GITLIBRARY_H

#include "changerecorder.h"
#include "gitfolder.h"
#include "hosttest.h"

#include <sourcecontrol.h>

#include <map>

typedef std::list<qorm::QormHandle<qorm::IDbObject>> ObjectList;

/// A library in the root of a work tree, with compounds named c0, c1, ... in files of that name,
/// and an embedded host. One more compound, number -1, is in a read-only data source.
class GitLibrary
{
public:
    explicit GitLibrary(int count);

    /// The work tree and the open host; the host may be deleted.
    GitFolder folder;
    std::unique_ptr<CEmbeddedHost> host;

    static QString GetFile(int number);
    static std::string GetUid(int number)
    {
        return Uid(number + 1);
    }
    tarno::datamodel::ItemID GetItem(int number) const;
    /// By way of the service that panels use.
    qorm::QormHandle<qorm::IDbObject> GetObject(int number) const
    {
        return FindObject(GetUid(number));
    }
    ObjectList GetObjects() const;

    /// Writes the file anew, with one more key.
    void Change(int number, char const* more = R"(, "changed": true)") const;

private:
    int const m_Count;
};

/// Collects the states that the library's listeners are told.
class StateRecorder : public ChangeRecorder
{
public:
    using ChangeRecorder::ChangeRecorder;

    /// The state told last; 0 for none.
    unsigned GetState(ItemID const& id) const;

    int count = 0;
    std::map<ItemID, int> counts;
    std::map<ItemID, unsigned> states;
    /// Called for each.
    std::function<void()> onState;

    void ItemAccessStateChanged(ItemLibraryAccessor&, ItemID const& id, long state) override;
};

#endif
