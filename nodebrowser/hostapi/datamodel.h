#ifndef NODEBROWSER_HOSTAPI_DATAMODEL_H
#define NODEBROWSER_HOSTAPI_DATAMODEL_H

/// @file
/// The contract's data model: the item library, its table of contents, its items, and what changes
/// them.
///
/// These are declarations only: the host's library defines them, and the panel calls them. The
/// panel is CNodeBrowser with its dialogs; CNodePalette asks the same questions at further times.
/// Unless a declaration says otherwise:
///
/// - Everything runs on the GUI thread; reference counts of contexts are atomic.
/// - Texts are 8-bit and end at the first zero byte. They are in Latin-1, unless the program takes
///   UTF-8 with nodebrowser::SetTextEncoding() of textencoding.h or, with Qt 4, a codec with
///   `QTextCodec::setCodecForCStrings()`. In Latin-1 the panel shows each byte as one character and
///   writes '?' for a character that Latin-1 lacks.
/// - A pointer is never null, neither as an argument nor as an answer. A `char const*` that is
///   given is valid during the call; one that is answered belongs to the host and stays valid as
///   long as the process.
/// - An accessor that is unbound, or bound to a removed item or a closed library, answers with an
///   empty text, false, a null identifier, an invalid accessor or an iterator that is done, and
///   changes nothing. So does a function that is given such an accessor or a null identifier. The
///   panel does not always test validity before a call.
/// - Changes are PrepareForSave, the functions of the modifiers that are not const, and
///   SetGlobalTarnoCompoundTarget. They may run an event loop, to ask the user something. The host
///   may delete the panel, or replace or close its library, meanwhile: the panel handles that.
/// - Everything else runs no event loop and sends no notifications: the panel asks most of it while
///   it paints.
/// - A change that is refused is reported by the host. The panel shows no message, ignores what
///   the change returns, and learns what has changed from notifications only.
/// - Exceptions pass through the panel.
///
/// @ref guide-embedding "docs/embedding.md" goes through the contract from the side of somebody who
/// defines it.

#include "framework.h"
#include "qorm.h"

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <type_traits>

#ifdef __GNUC__
// In a shared library of the host everything declared here is visible, whatever it hides else.
#pragma GCC visibility push(default)
#endif

/// The host's graph editor.
namespace tarno {
/// The item library, as the panel sees it. The rules that hold for all of it stand in datamodel.h.
namespace datamodel {

/// Item kinds of graphs, compared by identity and never by text: the panel passes these very
/// pointers, and ItemID::GetType() must return them. Their texts are the host's to choose.
namespace TarnoType {
/// A solver: an item that computes something.
extern char const* const gSolver;
/// A polymorphic solver. The panel shows it like a solver and does not offer to change its tags.
extern char const* const gPolymorphicSolver;
/// A compound: a graph of other items, or a signature, which only states inputs and outputs.
extern char const* const gCompound;
/// A global constant.
extern char const* const gGlobalConstant;
} // namespace TarnoType
/// The item kind that is not of graphs, under the same rules as those of TarnoType.
namespace LibType {
/// A type of values.
extern char const* const gType;
} // namespace LibType

/// Interface numbers, returned by GetAccessorInterfaceID(). They belong to the host's data model,
/// which has further ones, so they have gaps and are fixed; only those of the two modifiers, 5 and
/// 33, are chosen here. Each accessor class has one: its default constructor, which the host
/// defines, passes it to the protected constructor of UnspecifiedAccessor, and SetFrom tests for
/// it. The two notification interfaces are passed when listeners register. The panel compares no
/// numbers.
enum eInterfaceID
{
    kUnspecifiedInterface = 0,              ///< UnspecifiedAccessor
    kCompoundInterface = 4,                 ///< CompoundAccessor
    kCompoundModifierInterface = 5,         ///< CompoundModifierAccessor
    kFunctionInterface = 7,                 ///< FunctionAccessor
    kTypeDescriptorInterface = 15,          ///< TypeDescriptorAccessor
    kLoopCompoundModifierInterface = 22,    ///< LoopCompoundModifierAccessor
    kItemLibraryInterface = 32,             ///< ItemLibraryAccessor
    kItemLibraryModifierInterface = 33,     ///< ItemLibraryModifierAccessor
    kLowLevelItemLibraryInterface = 34,     ///< LowLevelItemLibraryAccessor
    kItemInterface = 36,                    ///< ItemAccessor
    kItemTOCInterface = 38,                 ///< ItemTOCAccessor
    kItemTOCNotificationInterface = 39,     ///< IItemTOCNotification
    kItemLibraryNotificationInterface = 40, ///< IItemLibraryNotification
    kLoopCompoundInterface = 47             ///< LoopCompoundAccessor
};

/// Opaque here, the panel only passes pointers on; the host defines it.
struct ItemIdentity;

/// Identifier of one library item: a small value that stays valid, and unequal to all others,
/// for the whole process, even after the item is removed.
class ItemID
{
public:
    /// The null identifier.
    ItemID();
    /// For the host's library, which owns the identity and keeps it for the whole process; null
    /// makes the null identifier.
    explicit ItemID(ItemIdentity const* identity);

    /// Names no item.
    bool IsNull() const;
    /// Not null, and of a kind that the data model knows; the item may be gone. Called for the
    /// selection.
    bool IsValid() const;
    /// One of the kind constants of TarnoType and LibType; null for a null identifier.
    char const* GetType() const;
    /// A text that identifies the item uniquely; empty for a null identifier. Called when a drag
    /// begins: it is the payload that the drop target receives.
    std::string Serialize() const;

    /// @{

    /// Compares which item is named; null equals null only.
    bool operator==(ItemID const& other) const;
    bool operator!=(ItemID const& other) const;
    /// @}

    /// Any strict weak order that holds for the process; null comes first.
    bool operator<(ItemID const& other) const;

private:
    friend class ItemIDUnlock;

    ItemIdentity const* m_Identity;
};

/// What stands behind an identifier.
class ItemIDUnlock
{
public:
    /// The item's UID text, valid for the whole process; empty, never null, for a null
    /// identifier. Not every item's text is a database UID: the panel looks up the database
    /// objects of those that DbObjectId::IsUID() accepts. The create dialogs hand the text of the
    /// signature chosen to the create functions below.
    static char const* GetItemIDUID(ItemID const& id);
    /// For the host, which owns the identity; null for a null identifier.
    static ItemIdentity const* GetIdentity(ItemID const& id);
};

/// Result of a named-value look-up: a text, or no value.
class CSimpleValue
{
public:
    /// No value.
    CSimpleValue();
    /// A value, which may be the empty text.
    explicit CSimpleValue(std::string const& text);

    /// False for no value. The panel asks nothing else.
    bool IsValid() const;
    /// Empty for no value.
    std::string const& GetText() const;

private:
    bool m_IsValid;
    std::string m_Text;
};

/// State shared by the accessors of one library. Opaque here; the host defines it.
class AccessorContext;
/// What an accessor is bound to, within its context; the host chooses the numbers. 0 is nothing.
typedef std::uintptr_t ItemHandle;
/// Number of a context; 0 is none.
typedef std::uintptr_t ContextID;
template <class T>
class Iterator;

/// A small value bound to one item, library or table of contents: a counted reference to the
/// context, the interface it is seen through, and the item's handle (0 is none). The panel keeps
/// accessors for any time, even after the item or library they are bound to is gone.
class UnspecifiedAccessor
{
public:
    /// Unbound. So is what the default constructors of the other accessors make.
    UnspecifiedAccessor();
    /// Bound to the same with the same interface; takes a share of the context.
    UnspecifiedAccessor(UnspecifiedAccessor const& other);
    /// Bound to the same item or library as the more specific accessor, but with the interface
    /// kUnspecifiedInterface.
    template <class Specific,
              class = std::enable_if_t<std::is_base_of<UnspecifiedAccessor, Specific>::value>>
    UnspecifiedAccessor(Specific const& other)
        : UnspecifiedAccessor(other.GetContext(), other.GetHandle())
    {}
    /// For the host's library: bound to the handle, with a share of the context. A null context
    /// gives an invalid accessor.
    UnspecifiedAccessor(AccessorContext* context, ItemHandle handle);
    /// Rebinds the context only when it or its identifier differs; always copies the handle. The
    /// interface stays: it belongs to the class.
    UnspecifiedAccessor& operator=(UnspecifiedAccessor const& other);
    /// Gives its share of the context back.
    ~UnspecifiedAccessor();

    /// Binds to the same item or library as `other`; invalid afterwards when that does not support
    /// this accessor's interface. Everything that exists supports kUnspecifiedInterface.
    void SetFrom(UnspecifiedAccessor const& other);

    /// Has a context and an item handle, which may be stale; see Revalidate.
    bool IsValid() const;
    /// Whether the handle still names an existing item, library or table of contents; false for an
    /// invalid accessor. The panel calls it before it asks an item for its identifier or a value,
    /// as a rule without looking at the answer; signatures and items of a menu for which it is
    /// false are left out. Rename and tags call it before and after their dialog, and false ends
    /// them.
    bool Revalidate() const;

    /// The number of the accessor's class, bound or not.
    eInterfaceID GetAccessorInterfaceID() const;
    /// Identifies the context, as long as an accessor holds it; 0 for none. The panel compares it
    /// and the handle to detect that its library was replaced.
    ContextID GetContextID() const;
    /// Null when the accessor is invalid or bound to something that is not an item. For an item
    /// that was removed, either null or the identifier that it had.
    ItemID GetItemID() const;

    /// For the host's library: the context, valid as long as the accessor holds it; null for none.
    AccessorContext* GetContext() const;
    /// 0 for none. The panel only compares it.
    ItemHandle GetHandle() const;

protected:
    /// @{

    /// For the accessor classes: the interface of the class, and what it is bound to, if anything.
    explicit UnspecifiedAccessor(eInterfaceID interfaceID);
    UnspecifiedAccessor(eInterfaceID interfaceID, AccessorContext* context, ItemHandle handle);
    /// @}

private:
    template <class T>
    friend class Iterator;

    AccessorContext* m_Context;
    eInterfaceID m_InterfaceID;
    ItemHandle m_Handle;
};

/// An item that computes something; the panel does not use it.
class FunctionAccessor : public UnspecifiedAccessor
{
public:
    FunctionAccessor();
};

/// An item of kind gCompound; signatures and loop compounds are compounds, too.
class CompoundAccessor : public UnspecifiedAccessor
{
public:
    CompoundAccessor();
};

/// A compound that is a loop. It supports the interface of CompoundAccessor, too.
class LoopCompoundAccessor : public UnspecifiedAccessor
{
public:
    LoopCompoundAccessor();
};

/// An item of kind gType. The panel treats an item that supports this interface as a type.
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
    /// For the host's library, bound as an UnspecifiedAccessor is.
    ItemAccessor(AccessorContext* context, ItemHandle handle);

    /// The item's value of that name; no value if it has none, or is gone. At each rebuild of its
    /// list the panel asks for "Parent" and, without one, for "Specializes", and leaves out items
    /// that have either, regardless of the value.
    CSimpleValue GetValue(char const* name) const;
    /// The display name; empty when the item is gone. Asked for the signatures in the create
    /// dialogs. The panel passes true for `display` and null for `reserved`, which mean nothing
    /// else to it.
    std::string GetName(bool display, char const* reserved) const;
};

/// Forward iteration over a snapshot of a list, so that the library may change meanwhile. Copies
/// advance independently. The host's library instantiates it for ItemAccessor.
template <class T>
class Iterator
{
public:
    /// The list and the place in it. Opaque here; the host defines it.
    struct State;

    /// For the host's library; the state is not null.
    explicit Iterator(std::shared_ptr<State> const& state);
    /// @{

    /// The place is copied.
    Iterator(Iterator const& other);
    Iterator& operator=(Iterator const& other);
    /// @}
    ~Iterator();

    /// No more items; neither GetCurrent() nor Next() may be called any more.
    bool IsDone() const;
    /// Goes on to the next item.
    void Next();
    /// Valid until Next(), and as long as the iterator.
    T& GetCurrent() const;

private:
    std::shared_ptr<State> m_State;
};

class ItemLibraryAccessor;

/// Listener of a table of contents. The panel listens from SetItemLibrary until the next call of
/// it or its destruction. Listeners are not owned; they unregister before they are destroyed, and
/// may do so, or register others, during a call. Arguments need be valid during the call only.
class IItemTOCNotification
{
public:
    /// The library has a new item. The panel does not look at it, and rebuilds its list at the next
    /// paint.
    virtual void ItemAdded(ItemAccessor& item) = 0;
    /// The item is gone. The panel does the same.
    virtual void ItemRemoved(ItemAccessor& item) = 0;

protected:
    ~IItemTOCNotification() {}
};

/// Listener of an item library, under the same rules, for changes from any origin. The panel
/// searches the names, kinds and tags that it read at its last rebuild or in ItemTagsChanged: a
/// change that is not announced is not found. LibraryInvalidated announces everything.
class IItemLibraryNotification
{
public:
    /// Several changes begin. The panel does nothing: it waits for the next paint anyway.
    virtual void OnBeginChanges(ItemLibraryAccessor& library) = 0;
    /// They are over. The panel does nothing.
    virtual void OnEndChanges(ItemLibraryAccessor& library) = 0;
    /// Anything may have changed. The panel rebuilds its list at the next paint.
    virtual void LibraryInvalidated(ItemLibraryAccessor& library) = 0;
    /// The panel rebuilds its list at the next paint, whichever item it was.
    virtual void ItemNameChanged(ItemLibraryAccessor& library, ItemID const& id) = 0;
    /// The panel reads the tags of an item that it lists at once, for the next search, and does
    /// not paint. It ignores null and categories other than "ApplicationTags".
    virtual void ItemTagsChanged(ItemLibraryAccessor& library, ItemID const& id,
                                 char const* category) = 0;
    /// The source-control state of an item has changed, or is known now. `state` holds bits, of
    /// which the panel keeps the lower 32; if they are new, the icon is composed at once, with
    /// ScsUtils::getAssetStateIcon unless that was asked the same since the list was made. It
    /// ignores items that it does not list.
    virtual void ItemAccessStateChanged(ItemLibraryAccessor& library, ItemID const& id,
                                        long state) = 0;
    /// Setting `*cancel`, which is false at first, stops the commit. The panel never sets it and
    /// does nothing.
    virtual void OnPreCommit(ItemLibraryAccessor& library, bool* cancel) = 0;
    /// The commit is over. The panel does nothing.
    virtual void OnPostCommit(ItemLibraryAccessor& library) = 0;

protected:
    ~IItemLibraryNotification() {}
};

/// The table of contents of a library.
class ItemTOCAccessor : public UnspecifiedAccessor
{
public:
    ItemTOCAccessor();
    /// For the host's library, bound as an UnspecifiedAccessor is.
    ItemTOCAccessor(AccessorContext* context, ItemHandle handle);

    /// The items of one kind, in the order of the table of contents; none for an unknown kind.
    /// Called at each rebuild for the five kinds, and by the create dialogs for compounds.
    Iterator<ItemAccessor> GetItems(char const* kind) const;

    /// @{

    /// Registers or removes a listener, which is not owned. The panel passes
    /// kItemTOCNotificationInterface and this accessor's context. A table of contents that is gone
    /// must accept RemoveNotification.
    void AddNotification(IItemTOCNotification* notification, eInterfaceID interfaceID,
                         ContextID contextID) const;
    void RemoveNotification(IItemTOCNotification* notification, eInterfaceID interfaceID,
                            ContextID contextID) const;
    /// @}
};

/// A library of items.
class ItemLibraryAccessor : public UnspecifiedAccessor
{
public:
    ItemLibraryAccessor();
    /// For the host's library, bound as an UnspecifiedAccessor is.
    ItemLibraryAccessor(AccessorContext* context, ItemHandle handle);

    /// The display name, empty for an unknown item. Asked for each item of a rebuild, for each row
    /// in sight at each paint, for menus and dialogs. The panel passes true for `display` and null
    /// for `reserved`, which mean nothing else to it.
    std::string GetItemName(ItemID const& id, bool display, char const* reserved) const;
    /// The item cannot be changed; false for an unknown one. True disables the tags entry in the
    /// menus of solvers and constants.
    bool ItemIsReadOnly(ItemID const& id) const;
    /// The item has changes that are not saved; false for an unknown one. Asked for each row in
    /// sight at each paint.
    bool ItemIsModified(ItemID const& id) const;
    /// The item's model, to be narrowed with SetFrom; invalid for an unknown item, with the
    /// reason in `error` unless that is null. The panel passes null.
    UnspecifiedAccessor GetModel(ItemID const& id, std::string* error) const;
    /// The tag string stored under the category, "tag;other tag"; empty when there is none, or no
    /// such item. Blanks around tags, empty and repeated ones mean nothing. Asked for
    /// "ApplicationTags" only: for each item of a rebuild, in ItemTagsChanged, and for the tags
    /// dialog.
    std::string GetItemTags(ItemID const& id, char const* category) const;

    /// @{

    /// Registers or removes a listener, which is not owned. The panel passes
    /// kItemLibraryNotificationInterface and this accessor's context. A library that is gone must
    /// accept RemoveNotification.
    void AddNotification(IItemLibraryNotification* notification, eInterfaceID interfaceID,
                         ContextID contextID) const;
    void RemoveNotification(IItemLibraryNotification* notification, eInterfaceID interfaceID,
                            ContextID contextID) const;
    /// @}
};

/// The library's storage side: preparation of a save.
class LowLevelItemLibraryAccessor : public UnspecifiedAccessor
{
public:
    LowLevelItemLibraryAccessor();

    /// Brings everything that is to be written into its final form. The panel's save command calls
    /// it, then CommitToDisk, unconditionally: the accessor may be invalid. Nothing happens then.
    void PrepareForSave() const;
};

/// Changes to a library and its items.
class ItemLibraryModifierAccessor : public UnspecifiedAccessor
{
public:
    ItemLibraryModifierAccessor();

    /// Stores the tag string of the item under the category; empty removes all. Called when the
    /// tags dialog is accepted and the tags differ, with "ApplicationTags" and `tags` sorted,
    /// without blanks around them and joined with ";". False when the change is refused, as for an
    /// unknown item. A null manager makes the change without recording it.
    bool SetItemTags(ItemID const& id, char const* category, char const* tags,
                     wek::fwk::ICommandManager* commandManager);

    /// Writes what has changed. `succeeded` is set in any case, and tells whether all of it was
    /// written: false for an invalid accessor, which the panel may well use. `messages`, unless it
    /// is null, takes a line for each thing that was not. The panel passes an empty list, false for
    /// `onlyChecked` and UID_Null() for `item`, which stands for the whole library. It ignores both
    /// results.
    void CommitToDisk(bool& succeeded, std::list<std::string>* messages, bool onlyChecked,
                      qorm::UID const& item);
};

/// Changes to one compound.
class CompoundModifierAccessor : public UnspecifiedAccessor
{
public:
    CompoundModifierAccessor();

    /// Makes a compound, or with `isSignature` a compound signature, binds to it and returns its
    /// identifier; is invalid, and returns a null one, when the host refuses. The panel looks at
    /// IsValid() only. Called after a create dialog: `library` may be invalid or closed by now,
    /// `name` may be taken, and consists of letters, digits and underscores, with UTF-8 of marks,
    /// too, and of '?' where the encoding has no such letter; `category` is the typed text, or
    /// empty. A null `signatureUid` goes with a signature, an empty one with a compound that
    /// implements none. A null manager makes the change without recording it, here and below.
    ItemID CreateAndSetFromNewCompound(ItemLibraryAccessor const& library, char const* name,
                                       bool isSignature, char const* signatureUid,
                                       char const* category,
                                       wek::fwk::ICommandManager* commandManager);

    /// Readies the compound for changes, by checking it out for example; called before
    /// RenameCompound. False when it cannot be changed or is gone. The panel ignores that and calls
    /// RenameCompound all the same, which then refuses.
    bool Initialize();
    /// Whether the compound may be changed at all; asked when its menu opens. False, also for an
    /// invalid accessor, disables the entries that rename and tag it. The panel passes true for
    /// `askHost`. It is a question: it must not prompt.
    bool CanModifyCompound(bool askHost) const;
    /// Gives the compound the name. Called when the rename dialog is accepted and the name differs.
    /// It was free when it was typed and may be taken by now; blanks at its end are kept. False
    /// when the change is refused. The manager may be null, as above.
    bool RenameCompound(char const* newName, wek::fwk::ICommandManager* commandManager);
};

/// Changes to one loop compound.
class LoopCompoundModifierAccessor : public UnspecifiedAccessor
{
public:
    LoopCompoundModifierAccessor();

    /// Makes a loop compound, as CompoundModifierAccessor::CreateAndSetFromNewCompound makes
    /// others, and with the same arguments; `signatureUid` is never null. The new one must support
    /// LoopCompoundAccessor and CompoundAccessor.
    ItemID CreateAndSetFromNewLoopCompound(ItemLibraryAccessor const& library, char const* name,
                                           char const* signatureUid, char const* category,
                                           wek::fwk::ICommandManager* commandManager);
};

/// The table of contents of the library; invalid for an invalid library. A library that is given
/// to SetItemLibrary must have one. Asked there, and by the create dialogs.
ItemTOCAccessor GetTOC(ItemLibraryAccessor const& library);

/// Whether an item of the library, or of one it builds on, has the name already; false for an
/// invalid library. Names that differ in the case of ASCII letters only are the same. Called at
/// each key in the rename dialog, except for the compound's own name in any case.
bool IsNameInNodeLibraryHierarchy(ItemLibraryAccessor const& library, char const* name);

/// The application's command manager, which the host owns; may be null. Asked by the type selector.
wek::fwk::ICommandManager* GetApplicationCommandManager();

/// What the panel asks about items, and tells the editor.
namespace Helpers {

/// False, also for an item that is gone, keeps the item out of graphs, and so out of the panel.
/// `kind` is the one that the table of contents lists it under.
bool IsValidGraphItemType(char const* kind, ItemAccessor& item);
/// True for a compound that only states a signature; false for other items and one that is gone.
/// Asked for compounds only.
bool IsAbstractFunction(ItemAccessor& item);
/// Makes the compound the one that the editor works on: called at a double click on a compound,
/// and after one was created. The panel has not tested `compound`: it is invalid when the item is
/// gone or cannot be seen as a compound. The panel leaves `context` empty.
void SetGlobalTarnoCompoundTarget(CompoundAccessor compound, CompoundAccessor context);

} // namespace Helpers

} // namespace datamodel
} // namespace tarno

#ifdef __GNUC__
#pragma GCC visibility pop
#endif

#endif
