#include "ui/catalogpicker.h"

#include "ui/widgets/theme.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace lanternic {

using namespace Qt::StringLiterals;

CatalogPicker::CatalogPicker(const Catalog &catalog, QSet<QString> hostsInUse,
                             std::function<void(const CatalogEntry &)> onChoose, QWidget *parent)
    : QDialog(parent), m_catalog(catalog), m_inUse(std::move(hostsInUse)),
      m_onChoose(std::move(onChoose))
{
    setWindowTitle(tr("Add service"));
    auto *layout = new QVBoxLayout(this);
    m_search = new QLineEdit(this);
    m_search->setPlaceholderText(tr("Search %1 public status pages").arg(catalog.entries().size()));
    m_search->setAccessibleName(tr("Search services"));
    m_search->setClearButtonEnabled(true);
    layout->addWidget(m_search);
    m_list = new QListWidget(this);
    m_list->setAccessibleName(tr("Services"));
    m_list->setUniformItemSizes(true);
    layout->addWidget(m_list, 1);
    auto *hint = new QLabel(tr("\u2191 \u2193 to choose, Enter to add, Esc to close"), this);
    hint->setTextFormat(Qt::PlainText);
    hint->setFont(Theme::font(11));
    layout->addWidget(hint);
    resize(420, 380);

    m_search->installEventFilter(this);
    connect(m_search, &QLineEdit::textChanged, this, &CatalogPicker::refresh);
    connect(m_search, &QLineEdit::returnPressed, this, &CatalogPicker::choose);
    connect(m_list, &QListWidget::itemActivated, this, &CatalogPicker::choose);
    refresh();
}

bool CatalogPicker::eventFilter(QObject *watched, QEvent *event)
{
    // The arrows move through the list while typing goes on in the field.
    if (watched == m_search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Up || key == Qt::Key_PageDown ||
            key == Qt::Key_PageUp) {
            QCoreApplication::sendEvent(m_list, event);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void CatalogPicker::refresh()
{
    m_shown =
        m_catalog.search(m_search->text().split(u' ', Qt::SkipEmptyParts)).mid(0, maximumShown);
    m_list->clear();
    for (const CatalogEntry &entry : std::as_const(m_shown)) {
        const QString host = QUrl(entry.url).host();
        const bool added = m_inUse.contains(host.toLower());
        auto *item = new QListWidgetItem(entry.name + u"  \u2014  "_s + host +
                                             (added ? tr("  \u2713 added") : QString()),
                                         m_list);
        item->setData(Qt::AccessibleTextRole,
                      added ? tr("%1, already among your sources").arg(entry.name) : entry.name);
    }
    m_list->setCurrentRow(m_shown.isEmpty() ? -1 : 0);
}

void CatalogPicker::choose()
{
    const int row = m_list->currentRow();
    if (row < 0 || row >= m_shown.size())
        return;
    m_onChoose(m_shown[row]);
    accept();
}

} // namespace lanternic
