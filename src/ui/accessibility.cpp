#include "ui/accessibility.h"

#include "ui/rowviews.h"
#include "ui/settingsview.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QFrame>
#include <QToolButton>

namespace lanternic {

namespace {

constexpr const char *decorative = "lanternicDecorative";

bool isDecorative(QObject *object)
{
    return object->isWidgetType() && object->property(decorative).toBool();
}

// A widget whose accessible children are some of its child widgets, in an order of its own.
class ChosenChildrenAccessible : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    int childCount() const override { return int(chosen().size()); }
    QAccessibleInterface *child(int index) const override
    {
        const QList<QWidget *> children = chosen();
        return index >= 0 && index < children.size()
                   ? QAccessible::queryAccessibleInterface(children[index])
                   : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return int(chosen().indexOf(child ? qobject_cast<QWidget *>(child->object()) : nullptr));
    }

protected:
    virtual QList<QWidget *> chosen() const = 0;
};

// A widget holding decoration: its children less the decorative ones.
class UndecoratedAccessible : public ChosenChildrenAccessible {
public:
    explicit UndecoratedAccessible(QWidget *widget) : ChosenChildrenAccessible(widget) {}

protected:
    QList<QWidget *> chosen() const override
    {
        QList<QWidget *> kept;
        for (QObject *object : widget()->children()) {
            auto *child = qobject_cast<QWidget *>(object);
            if (child && !child->isWindow() && !isDecorative(child))
                kept.append(child);
        }
        return kept;
    }
};

// Only the rows shown count, in the order shown, so that "3 of 12" is true.
class RowListAccessible : public ChosenChildrenAccessible {
public:
    explicit RowListAccessible(RowListView *list)
        : ChosenChildrenAccessible(list, QAccessible::List)
    {
    }

protected:
    QList<QWidget *> chosen() const override
    {
        const QList<StatusRowView *> rows = static_cast<RowListView *>(widget())->rows();
        return {rows.begin(), rows.end()};
    }
};

class RowAccessible : public QAccessibleWidget {
public:
    explicit RowAccessible(StatusRowView *row) : QAccessibleWidget(row, QAccessible::ListItem) {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = widget()->hasFocus();
        state.expandable = !static_cast<StatusRowView *>(widget())->newsButton()->isHidden();
        state.expanded = state.expandable && static_cast<StatusRowView *>(widget())->isExpanded();
        return state;
    }
    QStringList actionNames() const override
    {
        return {pressAction(), setFocusAction(), showMenuAction()};
    }
    QString localizedActionDescription(const QString &action) const override
    {
        if (action == pressAction())
            return StatusRowView::tr("Open status page");
        if (action == showMenuAction())
            return StatusRowView::tr("Silence or choose notifications");
        return QAccessibleWidget::localizedActionDescription(action);
    }
    void doAction(const QString &action) override
    {
        auto *row = static_cast<StatusRowView *>(widget());
        if (action == pressAction())
            row->openPage();
        else if (action == showMenuAction())
            row->openMenu();
        else
            QAccessibleWidget::doAction(action);
    }
};

class SegmentAccessible : public QAccessibleWidget {
public:
    explicit SegmentAccessible(QAbstractButton *button)
        : QAccessibleWidget(button, QAccessible::RadioButton)
    {
    }

    QString text(QAccessible::Text t) const override
    {
        const QString own = QAccessibleWidget::text(t);
        return t == QAccessible::Name && own.isEmpty()
                   ? static_cast<QAbstractButton *>(widget())->text()
                   : own;
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = static_cast<QAbstractButton *>(widget())->isChecked();
        return state;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString &action) override
    {
        if (action == pressAction())
            static_cast<QAbstractButton *>(widget())->click();
        else
            QAccessibleWidget::doAction(action);
    }
};

QAccessibleInterface *lanternicAccessible(const QString &className, QObject *object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    auto *widget = static_cast<QWidget *>(object);
    if (auto *row = qobject_cast<StatusRowView *>(object))
        return new RowAccessible(row);
    if (qobject_cast<RowListView *>(object))
        return new RowListAccessible(static_cast<RowListView *>(widget));
    if (auto *segment = qobject_cast<SegmentButton *>(object))
        return new SegmentAccessible(segment);
    if (className == QLatin1StringView("QFrame") &&
        static_cast<QFrame *>(widget)->frameShape() == QFrame::HLine)
        return new QAccessibleWidget(widget, QAccessible::Separator);
    const QObjectList &children = widget->children();
    if (className == QLatin1StringView("QWidget") &&
        std::any_of(children.begin(), children.end(), isDecorative))
        return new UndecoratedAccessible(widget);
    return nullptr;
}

} // namespace

void markDecorative(QWidget *widget)
{
    widget->setProperty(decorative, true);
}

void installAccessibility()
{
    static bool installed = false;
    if (std::exchange(installed, true))
        return;
    QAccessible::installFactory(lanternicAccessible);
}

} // namespace lanternic
