#ifndef EDITOR_TRAILBAR_H
#define EDITOR_TRAILBAR_H

#include <datamodel.h>

#include <QWidget>

#include <vector>

class CEmbeddedHost;
class QHBoxLayout;
class QLabel;

/// Shows through which compounds the user came to the current one, and leads back to them. Hidden
/// as long as there is no compound.
class CTrailBar : public QWidget
{
    Q_OBJECT

public:
    /// Follows the host by itself, which has to outlive it.
    explicit CTrailBar(CEmbeddedHost& host, QWidget* parent = nullptr);

    bool CanGoUp() const;

public Q_SLOTS:
    /// To the compound that the current one was opened from, if any.
    void GoUp();

private:
    void Follow();
    /// Whether the compound has the other one among its nodes.
    bool HasNode(tarno::datamodel::ItemID const& compound,
                 tarno::datamodel::ItemID const& other) const;
    void Refresh();
    void AddStep(std::size_t step);
    void GoTo(std::size_t step);

    CEmbeddedHost& m_Host;
    /// From the outermost compound to the current one.
    std::vector<tarno::datamodel::ItemID> m_Trail;
    /// The buttons and separators of the part that fits.
    QList<QWidget*> m_Steps;
    QHBoxLayout* m_Layout;
    QLabel* m_ReadOnlyLabel;
};

#endif
