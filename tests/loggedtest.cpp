#include "loggedtest.h"

#include <QApplication>
#include <QProxyStyle>
#include <QStyleFactory>

namespace {

LoggedTest* current = nullptr;

class StillStyle : public QProxyStyle
{
public:
    StillStyle()
        : QProxyStyle(QLatin1String("Fusion"))
    {}

    int styleHint(StyleHint hint, QStyleOption const* option, QWidget const* widget,
                  QStyleHintReturn* returnData) const override
    {
        bool const isMovement = hint == SH_Widget_Animate || hint == SH_Widget_Animation_Duration;
        return isMovement ? 0 : QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

} // namespace

void LoggedTest::Expect(QString const& text)
{
    m_Expected << text;
}

void LoggedTest::init()
{
    // What the platform without a screen cannot do is no fault.
    m_Expected = QStringList(QLatin1String("This plugin does not support"));
    m_Unexpected.clear();
    current = this;
    // The test library has put its own handler in; it gets everything that passes here.
    m_PreviousHandler = qInstallMessageHandler(Receive);
    SetUp();
}

void LoggedTest::cleanup()
{
    TearDown();
    qInstallMessageHandler(m_PreviousHandler);
    current = nullptr;
    QVERIFY2(m_Unexpected.isEmpty(),
             qPrintable("unexpected in the log: " + m_Unexpected.join(QLatin1Char('\n'))));
}

void LoggedTest::Receive(QtMsgType type, QMessageLogContext const& context, QString const& message)
{
    for (QString const& text : current->m_Expected) {
        if (message.contains(text))
            return;
    }
    if (type != QtDebugMsg && type != QtInfoMsg)
        current->m_Unexpected << message;
    current->m_PreviousHandler(type, context, message);
}

void StandStill()
{
    QApplication::setStyle(new StillStyle);
    QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
    QApplication::setEffectEnabled(Qt::UI_AnimateTooltip, false);
    QApplication::setEffectEnabled(Qt::UI_FadeTooltip, false);
}

#include "moc_loggedtest.cpp"
