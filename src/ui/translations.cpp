#include "ui/translations.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace lanternic {

using namespace Qt::StringLiterals;

QString installTranslations(const QLocale &locale, const QStringList &folders, QObject *owner)
{
    const auto install = [owner](const QLocale &locale, const QString &name,
                                 const QString &folder) -> QTranslator * {
        auto *translator = new QTranslator(owner);
        if (translator->load(locale, name, u"_"_s, folder) &&
            QCoreApplication::installTranslator(translator))
            return translator;
        delete translator;
        return nullptr;
    };
    QString folder;
    for (const QString &candidate : folders) {
        if (QFileInfo::exists(candidate + u"/lanternic_en.qm"_s)) {
            folder = candidate;
            break;
        }
    }
    if (folder.isEmpty())
        return QString();
    install(QLocale(QLocale::English), u"lanternic"_s, folder);
    if (locale.language() == QLocale::English)
        return QString();
    QTranslator *own = install(locale, u"lanternic"_s, folder);
    if (!own || own->language().startsWith(u"en"_s))
        return QString();
    install(locale, u"qtbase"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    return own->language();
}

} // namespace lanternic
