#ifndef NODEBROWSER_TESTS_LIBRARYUSER_H
#define NODEBROWSER_TESTS_LIBRARYUSER_H

#include <embeddedhost/embeddedhost.h>

#include <list>
#include <string>

/// Works on an open library the way the panel does: through accessors and the command manager.
class LibraryUser
{
public:
    explicit LibraryUser(CEmbeddedHost& host)
        : m_Host(host)
    {}

    tarno::datamodel::ItemID Create(char const* name, bool isSignature = false,
                                    char const* signature = "", char const* category = "")
    {
        tarno::datamodel::CompoundModifierAccessor modifier;
        return modifier.CreateAndSetFromNewCompound(m_Host.GetLibrary(), name, isSignature,
                                                    isSignature ? nullptr : signature, category,
                                                    &m_Host.GetCommandManager());
    }

    bool Rename(tarno::datamodel::ItemID const& id, char const* name)
    {
        tarno::datamodel::CompoundAccessor compound;
        compound.SetFrom(m_Host.GetLibrary().GetModel(id, nullptr));
        tarno::datamodel::CompoundModifierAccessor modifier;
        modifier.SetFrom(compound);
        modifier.Initialize();
        return modifier.RenameCompound(name, &m_Host.GetCommandManager());
    }

    bool Tag(tarno::datamodel::ItemID const& id, char const* tags)
    {
        tarno::datamodel::ItemLibraryModifierAccessor modifier;
        modifier.SetFrom(m_Host.GetLibrary());
        return modifier.SetItemTags(id, "ApplicationTags", tags, &m_Host.GetCommandManager());
    }

    bool Save(std::string const& uid = qorm::UID_Null().GetStr())
    {
        tarno::datamodel::ItemLibraryModifierAccessor modifier;
        modifier.SetFrom(m_Host.GetLibrary());
        bool succeeded = false;
        m_Messages.clear();
        modifier.CommitToDisk(succeeded, &m_Messages, false, qorm::UID(uid.c_str()));
        return succeeded;
    }

    /// What the last Save could not write.
    std::list<std::string> const& GetSaveMessages() const
    {
        return m_Messages;
    }

    std::string NameOf(tarno::datamodel::ItemID const& id) const
    {
        return m_Host.GetLibrary().GetItemName(id, true, nullptr);
    }

    bool IsModified(tarno::datamodel::ItemID const& id) const
    {
        return m_Host.GetLibrary().ItemIsModified(id);
    }

private:
    CEmbeddedHost& m_Host;
    std::list<std::string> m_Messages;
};

#endif
