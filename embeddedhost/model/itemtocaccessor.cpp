#include "model/accessorcontext.h"
#include "model/library.h"
#include "model/libraryitem.h"

#include <datamodel.h>

namespace tarno {
namespace datamodel {

using embeddedhost::CLibrary;

template <>
struct Iterator<ItemAccessor>::State
{
    std::vector<ItemHandle> handles;
    std::size_t position;
    UnspecifiedAccessor context;
    ItemAccessor current;

    void Bind()
    {
        if (position < handles.size())
            current = ItemAccessor(context.GetContext(), handles[position]);
    }
};

template <class T>
Iterator<T>::Iterator(std::shared_ptr<State> const& state)
    : m_State(state)
{}

template <class T>
Iterator<T>::Iterator(Iterator const& other)
    : m_State(std::make_shared<State>(*other.m_State))
{}

template <class T>
Iterator<T>::~Iterator() = default;

template <class T>
bool Iterator<T>::IsDone() const
{
    return m_State->position >= m_State->handles.size();
}

template <class T>
void Iterator<T>::Next()
{
    ++m_State->position;
    m_State->Bind();
}

template <class T>
T& Iterator<T>::GetCurrent() const
{
    return m_State->current;
}

template class Iterator<ItemAccessor>;

namespace {

bool IsTocRegistration(UnspecifiedAccessor const& toc, eInterfaceID interfaceID,
                       ContextID contextID)
{
    return toc.IsValid() && interfaceID == kItemTOCNotificationInterface
           && contextID == toc.GetContextID();
}

} // namespace

ItemTOCAccessor::ItemTOCAccessor()
    : UnspecifiedAccessor(kItemTOCInterface)
{}

ItemTOCAccessor::ItemTOCAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kItemTOCInterface, context, handle)
{}

Iterator<ItemAccessor> ItemTOCAccessor::GetItems(char const* kind) const
{
    auto const state = std::make_shared<Iterator<ItemAccessor>::State>();
    state->position = 0;
    state->context = *this;
    embeddedhost::KindIndex const index = embeddedhost::GetKindIndex(kind);
    CLibrary const* const library = FindLibrary(*this);
    if (library && index != embeddedhost::kNoKind) {
        auto const& items = library->GetItems(index);
        state->handles.reserve(items.size());
        for (auto const& item : items)
            state->handles.push_back(embeddedhost::GetItemHandle(item->GetIdentity()));
    }
    state->Bind();
    return Iterator<ItemAccessor>(state);
}

void ItemTOCAccessor::AddNotification(IItemTOCNotification* notification, eInterfaceID interfaceID,
                                      ContextID contextID) const
{
    if (IsTocRegistration(*this, interfaceID, contextID))
        GetContext()->GetNotifier().GetTocListeners().Add(notification);
}

void ItemTOCAccessor::RemoveNotification(IItemTOCNotification* notification,
                                         eInterfaceID interfaceID, ContextID contextID) const
{
    if (IsTocRegistration(*this, interfaceID, contextID))
        GetContext()->GetNotifier().GetTocListeners().Remove(notification);
}

ItemTOCAccessor GetTOC(ItemLibraryAccessor const& library)
{
    if (!FindLibrary(library))
        return ItemTOCAccessor();
    return ItemTOCAccessor(library.GetContext(), embeddedhost::kTocHandle);
}

} // namespace datamodel
} // namespace tarno
