#pragma once

#include "config/catalog.h"

#include <QDialog>
#include <QSet>
#include <functional>

class QLineEdit;
class QListWidget;

namespace lanternic {

// "Add service…": a search over the catalogue of public status pages, driven from the
// keyboard (type, arrows, Enter). Services already among the sources are marked.
class CatalogPicker : public QDialog {
    Q_OBJECT

public:
    // hostsInUse: the hosts of the current source lines, lower case.
    CatalogPicker(const Catalog &catalog, QSet<QString> hostsInUse,
                  std::function<void(const CatalogEntry &)> onChoose, QWidget *parent = nullptr);

    QLineEdit *searchField() const { return m_search; }
    QListWidget *list() const { return m_list; }

    // At most this many matches are listed; typing more narrows them.
    static constexpr int maximumShown = 200;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void refresh();
    void choose();

    const Catalog &m_catalog;
    QSet<QString> m_inUse;
    std::function<void(const CatalogEntry &)> m_onChoose;
    QLineEdit *m_search;
    QListWidget *m_list;
    QList<CatalogEntry> m_shown;
};

} // namespace lanternic
