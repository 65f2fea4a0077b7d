#ifndef EMBEDDEDHOST_MAILBOX_H
#define EMBEDDEDHOST_MAILBOX_H

#include <QObject>

#include <functional>
#include <memory>

namespace embeddedhost {

/// Brings results of worker threads to the thread that it lives on, through the event loop. The
/// workers hold the slot and not the box: results posted after the box is gone are dropped.
class CMailbox : public QObject
{
    Q_OBJECT

public:
    typedef std::function<void()> Result;

    class Slot
    {
    public:
        /// On any thread.
        void Post(Result const& result);

    private:
        friend class CMailbox;
        struct Content;
        std::shared_ptr<Content> m_Content;
    };

    CMailbox();
    ~CMailbox() override;

    Slot const& GetSlot() const;

private Q_SLOTS:
    void Deliver();

private:
    Slot m_Slot;
};

} // namespace embeddedhost

#endif
