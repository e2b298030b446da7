#include "platform/notifier.h"

namespace lanternic {

QString Notifier::inert(QStringView text)
{
    QString out;
    out.reserve(text.size());
    for (QChar c : text) {
        switch (c.unicode()) {
        case u'<':
            out.append(QChar(0x2039)); // single left-pointing angle quotation mark
            break;
        case u'>':
            out.append(QChar(0x203a));
            break;
        case u'&':
            out.append(QChar(0xff06)); // fullwidth ampersand
            break;
        default:
            out.append(c);
        }
    }
    return out;
}

} // namespace lanternic
