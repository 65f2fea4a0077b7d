#ifndef NODEBROWSER_HOSTAPI_DATAMODEL_H
#define NODEBROWSER_HOSTAPI_DATAMODEL_H

// The host's data model: the item library, its table of contents, its items, and what changes
// them. Declarations only; the host's library defines them. Texts are 8-bit. Everything runs on
// the GUI thread; reference counts of contexts are atomic. Questions run no event loop and change
// nothing.

#include "framework.h"
#include "qorm.h"

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <type_traits>

namespace tarno {
namespace datamodel {

/// Item kinds, compared by identity and never by text.
namespace TarnoType {
extern char const* const gSolver;
extern char const* const gPolymorphicSolver;
extern char const* const gCompound;
extern char const* const gGlobalConstant;
}
namespace LibType {
extern char const* const gType;
}

/// What GetAccessorInterfaceID() answers.
enum eInterfaceID
{
    kUnspecifiedInterface = 0,
    kCompoundInterface = 4,
    kCompoundModifierInterface = 5,
    kFunctionInterface = 7,
    kTypeDescriptorInterface = 15,
    kLoopCompoundModifierInterface = 22,
    kItemLibraryInterface = 32,
    kItemLibraryModifierInterface = 33,
    kLowLevelItemLibraryInterface = 34,
    kItemInterface = 36,
    kItemTOCInterface = 38,
    kItemTOCNotificationInterface = 39,
    kItemLibraryNotificationInterface = 40,
    kLoopCompoundInterface = 47
};

struct ItemIdentity;

/// Identifier of one library item: a small value that stays valid, and unequal to all others,
/// for the whole process, whatever becomes of the item.
class ItemID
{
public:
    /// The null identifier.
    ItemID();
    /// For the host's library, which keeps identities for the whole process.
    explicit ItemID(ItemIdentity const* identity);

    bool IsNull() const;
    /// Not null, and of a kind that the data model knows.
    bool IsValid() const;
    /// One of the kind constants; null for a null identifier.
    char const* GetType() const;
    /// A text from which the identifier can be told again; empty for a null identifier.
    std::string Serialize() const;

    bool operator==(ItemID const& other) const;
    bool operator!=(ItemID const& other) const;
    /// Any strict weak order that holds for the process; null comes first.
    bool operator<(ItemID const& other) const;

private:
    friend class ItemIDUnlock;

    ItemIdentity const* m_Identity;
};

class ItemIDUnlock
{
public:
    /// The item's UID text, valid for the whole process; empty, never null, for a null
    /// identifier. Not every item's text is a database UID.
    static char const* GetItemIDUID(ItemID const& id);
    static ItemIdentity const* GetIdentity(ItemID const& id);
};

/// Result of a named-value look-up.
class CSimpleValue
{
public:
    /// No value.
    CSimpleValue();
    explicit CSimpleValue(std::string const& text);

    bool IsValid() const;
    /// Empty for no value.
    std::string const& GetText() const;

private:
    bool m_IsValid;
    std::string m_Text;
};

class AccessorContext;
typedef std::uintptr_t ItemHandle;
typedef std::uintptr_t ContextID;

/// A small value bound to one item, library or table of contents: a counted reference to the
/// context, the interface it is seen through, and the item's handle (0 is none). An invalid
/// accessor answers every question with empty or false.
class UnspecifiedAccessor
{
public:
    UnspecifiedAccessor();
    UnspecifiedAccessor(UnspecifiedAccessor const& other);
    /// Bound to what the more specific accessor is bound to, whose interface stays behind: the copy
    /// is seen through kUnspecifiedInterface again.
    template <class Specific,
              class = std::enable_if_t<std::is_base_of<UnspecifiedAccessor, Specific>::value> >
    UnspecifiedAccessor(Specific const& other)
        : UnspecifiedAccessor(other.GetContext(), other.GetHandle())
    {
    }
    /// For the host's library.
    UnspecifiedAccessor(AccessorContext* context, ItemHandle handle);
    /// Rebinds the context only when it or its identifier differs; always copies the handle.
    UnspecifiedAccessor& operator=(UnspecifiedAccessor const& other);
    ~UnspecifiedAccessor();

    /// Binds to what the other one is bound to; invalid afterwards when that does not support
    /// this accessor's interface.
    void SetFrom(UnspecifiedAccessor const& other);

    /// Has a context and an item handle.
    bool IsValid() const;
    /// Makes sure that the handle still names a living item; to be called before each use.
    /// False when it does not.
    bool Revalidate() const;

    eInterfaceID GetAccessorInterfaceID() const;
    /// Identifies the context; 0 for none.
    ContextID GetContextID() const;
    /// Null when the accessor is invalid or bound to something that is not an item.
    ItemID GetItemID() const;

    /// For the host's library.
    AccessorContext* GetContext() const;
    ItemHandle GetHandle() const;

protected:
    explicit UnspecifiedAccessor(eInterfaceID interfaceID);
    UnspecifiedAccessor(eInterfaceID interfaceID, AccessorContext* context, ItemHandle handle);

private:
    AccessorContext* m_Context;
    eInterfaceID m_InterfaceID;
    ItemHandle m_Handle;
};

class FunctionAccessor : public UnspecifiedAccessor
{
public:
    FunctionAccessor();
};

class CompoundAccessor : public UnspecifiedAccessor
{
public:
    CompoundAccessor();
};

class LoopCompoundAccessor : public UnspecifiedAccessor
{
public:
    LoopCompoundAccessor();
};

class TypeDescriptorAccessor : public UnspecifiedAccessor
{
public:
    TypeDescriptorAccessor();
};

/// One item of a library.
class ItemAccessor : public UnspecifiedAccessor
{
public:
    ItemAccessor();
    ItemAccessor(AccessorContext* context, ItemHandle handle);

    /// A value that the item carries under the name; the panel asks for "Parent" and
    /// "Specializes", and hides items that have either.
    CSimpleValue GetValue(char const* name) const;
    /// The display name; the panel passes true and null.
    std::string GetName(bool display, char const* reserved) const;
};

/// Forward iteration over a list taken when the iterator was made; the library may change
/// meanwhile. The host's library instantiates it for ItemAccessor.
template <class T>
class Iterator
{
public:
    struct State;

    /// For the host's library.
    explicit Iterator(std::shared_ptr<State> const& state);
    Iterator(Iterator const& other);
    ~Iterator();

    /// No more items; GetCurrent() may not be called any more.
    bool IsDone() const;
    void Next();
    /// Valid until Next().
    T& GetCurrent() const;

private:
    std::shared_ptr<State> m_State;
};

class ItemLibraryAccessor;

/// Told by a table of contents. Listeners are not owned; they unregister before they die, and
/// may do so, or register others, while being called.
class IItemTOCNotification
{
public:
    virtual void ItemAdded(ItemAccessor& item) = 0;
    virtual void ItemRemoved(ItemAccessor& item) = 0;

protected:
    ~IItemTOCNotification() {}
};

/// Told by an item library, under the same rules.
class IItemLibraryNotification
{
public:
    virtual void OnBeginChanges(ItemLibraryAccessor& library) = 0;
    virtual void OnEndChanges(ItemLibraryAccessor& library) = 0;
    /// Anything may have changed.
    virtual void LibraryInvalidated(ItemLibraryAccessor& library) = 0;
    virtual void ItemNameChanged(ItemLibraryAccessor& library, ItemID const& id) = 0;
    virtual void ItemTagsChanged(ItemLibraryAccessor& library, ItemID const& id,
                                 char const* category) = 0;
    /// `state` holds source-control state bits.
    virtual void ItemAccessStateChanged(ItemLibraryAccessor& library, ItemID const& id,
                                        long state) = 0;
    /// Setting `*cancel` stops the commit.
    virtual void OnPreCommit(ItemLibraryAccessor& library, bool* cancel) = 0;
    virtual void OnPostCommit(ItemLibraryAccessor& library) = 0;

protected:
    ~IItemLibraryNotification() {}
};

/// The table of contents of a library.
class ItemTOCAccessor : public UnspecifiedAccessor
{
public:
    ItemTOCAccessor();
    ItemTOCAccessor(AccessorContext* context, ItemHandle handle);

    /// The items of one kind, in the order of the table of contents.
    Iterator<ItemAccessor> GetItems(char const* kind) const;

    /// The interface goes with kItemTOCNotificationInterface and this accessor's context.
    void AddNotification(IItemTOCNotification* notification, eInterfaceID interfaceID,
                         ContextID contextID) const;
    void RemoveNotification(IItemTOCNotification* notification, eInterfaceID interfaceID,
                            ContextID contextID) const;
};

/// A library of items.
class ItemLibraryAccessor : public UnspecifiedAccessor
{
public:
    ItemLibraryAccessor();
    ItemLibraryAccessor(AccessorContext* context, ItemHandle handle);

    /// The display name, empty for an unknown item; the panel passes true and null.
    std::string GetItemName(ItemID const& id, bool display, char const* reserved) const;
    bool ItemIsReadOnly(ItemID const& id) const;
    /// The item has changes that are not saved.
    bool ItemIsModified(ItemID const& id) const;
    /// The item's model, to be narrowed with SetFrom; invalid for an unknown item, with the
    /// reason in `error` unless that is null.
    UnspecifiedAccessor GetModel(ItemID const& id, std::string* error) const;
    /// The tag string stored under the category, empty when there is none.
    std::string GetItemTags(ItemID const& id, char const* category) const;

    /// The interface goes with kItemLibraryNotificationInterface and this accessor's context.
    void AddNotification(IItemLibraryNotification* notification, eInterfaceID interfaceID,
                         ContextID contextID) const;
    void RemoveNotification(IItemLibraryNotification* notification, eInterfaceID interfaceID,
                            ContextID contextID) const;
};

/// The library below its display: what must happen around saving.
class LowLevelItemLibraryAccessor : public UnspecifiedAccessor
{
public:
    LowLevelItemLibraryAccessor();

    /// Brings everything that is to be written into its final form; called before CommitToDisk.
    void PrepareForSave() const;
};

/// Changes to a library and its items. Refusals are reported by the host.
class ItemLibraryModifierAccessor : public UnspecifiedAccessor
{
public:
    ItemLibraryModifierAccessor();

    /// False when the change is refused. A null manager makes the change without recording it.
    bool SetItemTags(ItemID const& id, char const* category, char const* tags,
                     wek::fwk::ICommandManager* commandManager);

    /// Writes what has changed. `succeeded` tells whether all of it was written; `messages`
    /// takes a line for each thing that was not. The panel passes false for `onlyChecked` and
    /// UID_Null() for `item`, which stands for the whole library.
    void CommitToDisk(bool& succeeded, std::list<std::string>* messages, bool onlyChecked,
                      qorm::UID const& item);
};

/// Changes to one compound.
class CompoundModifierAccessor : public UnspecifiedAccessor
{
public:
    CompoundModifierAccessor();

    /// Makes a compound, or with `isSignature` a compound signature, and binds to it; stays
    /// invalid, and returns a null identifier, when the host refuses. A null `signatureUid`
    /// goes with a signature, an empty one with a compound that implements none.
    ItemID CreateAndSetFromNewCompound(ItemLibraryAccessor const& library, char const* name,
                                       bool isSignature, char const* signatureUid,
                                       char const* category,
                                       wek::fwk::ICommandManager* commandManager);

    /// Readies the compound for changes.
    bool Initialize();
    /// Whether the compound may be changed at all; the panel passes true for `askHost`.
    bool CanModifyCompound(bool askHost) const;
    bool RenameCompound(char const* newName, wek::fwk::ICommandManager* commandManager);
};

/// Changes to one loop compound.
class LoopCompoundModifierAccessor : public UnspecifiedAccessor
{
public:
    LoopCompoundModifierAccessor();

    /// As CreateAndSetFromNewCompound, for a loop compound.
    ItemID CreateAndSetFromNewLoopCompound(ItemLibraryAccessor const& library, char const* name,
                                           char const* signatureUid, char const* category,
                                           wek::fwk::ICommandManager* commandManager);
};

/// The table of contents of the library; invalid for an invalid library.
ItemTOCAccessor GetTOC(ItemLibraryAccessor const& library);

/// Whether an item of the library, or of one it builds on, has the name already.
bool IsNameInNodeLibraryHierarchy(ItemLibraryAccessor const& library, char const* name);

/// The application's command manager; may be null.
wek::fwk::ICommandManager* GetApplicationCommandManager();

namespace Helpers {

/// False keeps the item out of graphs, and so out of the panel.
bool IsValidGraphItemType(char const* kind, ItemAccessor& item);
/// True for a compound that only states a signature.
bool IsAbstractFunction(ItemAccessor& item);
/// Makes the compound the one that the editor works on; the panel leaves `context` empty.
void SetGlobalTarnoCompoundTarget(CompoundAccessor compound, CompoundAccessor context);

} // namespace Helpers

} // namespace datamodel
} // namespace tarno

#endif
