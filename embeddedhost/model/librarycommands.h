#ifndef EMBEDDEDHOST_LIBRARYCOMMANDS_H
#define EMBEDDEDHOST_LIBRARYCOMMANDS_H

#include "model/detacheditem.h"
#include "model/library.h"

#include <framework.h>

#include <string>
#include <vector>

namespace embeddedhost {

/// A change of the open library, which may be closed before the change is undone: nothing
/// happens then.
class CLibraryCommand : public wek::fwk::ICommand
{
public:
    CLibraryCommand(CLibrary& library, std::string const& text);

    void AddRef() override;
    void Release() override;
    char const* GetText() const override;

protected:
    /// Null once the library is closed.
    CLibrary* GetLibrary() const;

private:
    /// Keeps the context.
    tarno::datamodel::ItemLibraryAccessor const m_Accessor;
    /// 8-bit.
    std::string const m_Text;
    int m_References = 0;
};

/// Changes keys of one item's object.
class CChangeObjectCommand final : public CLibraryCommand
{
public:
    CChangeObjectCommand(CLibrary& library, CLibraryItem const& item, ItemObject changed,
                         std::string const& text);

    void Do() override;
    void Undo() override;

private:
    void Change(ItemObject const& from, ItemObject const& to);

    std::string const m_Uid;
    ItemObject const m_Before;
    ItemObject const m_After;
};

/// Adds an item in a file of its own.
class CAddItemCommand final : public CLibraryCommand
{
public:
    /// `path` is the file that a save will make.
    CAddItemCommand(CLibrary& library, DataSourcePtr const& source, QString const& path,
                    ItemObject object, std::string const& text);

    void Do() override;
    void Undo() override;

private:
    DetachedItem m_Item;
};

/// Removes an item; a save removes its file, if it is alone there.
class CRemoveItemCommand final : public CLibraryCommand
{
public:
    CRemoveItemCommand(CLibrary& library, CLibraryItem const& item, std::string const& text);

    void Do() override;
    void Undo() override;

private:
    DetachedItem m_Item;
};

/// Several commands as one: when one of them raises, those before it are undone.
class CCommandGroup final : public CLibraryCommand
{
public:
    typedef std::vector<wek::fwk::RefCountedAutoPtr<wek::fwk::ICommand>> Commands;

    CCommandGroup(CLibrary& library, Commands const& commands, std::string const& text);

    void Do() override;
    void Undo() override;

private:
    Commands const m_Commands;
};

/// Runs the command through the manager, or at once without one.
void RunCommand(CLibraryCommand* command, wek::fwk::ICommandManager* manager);

} // namespace embeddedhost

#endif
