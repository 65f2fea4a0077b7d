#ifndef EDITOR_CANVAS_H
#define EDITOR_CANVAS_H

#include <QGraphicsScene>
#include <QGraphicsView>

class QLabel;

/// Where graphs are shown: a grid. As long as there is none it says what library is open.
class CCanvas : public QGraphicsView
{
    Q_OBJECT

public:
    explicit CCanvas(QWidget* parent = nullptr);

    /// Both empty when no library is open.
    void SetSummary(QString const& libraryName, QString const& itemCounts);

protected:
    void drawBackground(QPainter* painter, QRectF const& rect) override;

private:
    QGraphicsScene m_Scene;
    QLabel* const m_NameLabel;
    QLabel* const m_CountsLabel;
};

#endif
