#include "present/jsonwriter.h"

#include "store/storedjson.h"

#include <algorithm>

namespace lanternic {

void JsonWriter::separate()
{
    if (m_afterValue)
        m_out += ',';
    m_afterValue = true;
}

JsonWriter &JsonWriter::open(char bracket)
{
    separate();
    m_out += bracket;
    m_afterValue = false;
    return *this;
}

JsonWriter &JsonWriter::close(char bracket)
{
    m_out += bracket;
    m_afterValue = true;
    return *this;
}

JsonWriter &JsonWriter::key(QLatin1StringView name)
{
    // One append: each of QByteArray's costs some forty instructions, and keys are most of
    // what a report writes.
    const qsizetype start = m_out.size();
    m_out.resize(start + name.size() + 4);
    char *to = m_out.data() + start;
    if (m_afterValue)
        *to++ = ',';
    *to++ = '"';
    to = std::copy(name.begin(), name.end(), to);
    *to++ = '"';
    *to++ = ':';
    m_out.truncate(to - m_out.data());
    m_afterValue = false;
    return *this;
}

JsonWriter &JsonWriter::value(QStringView text)
{
    separate();
    appendJsonString(m_out, text);
    return *this;
}

JsonWriter &JsonWriter::value(qint64 number)
{
    separate();
    m_out += QByteArray::number(number);
    return *this;
}

JsonWriter &JsonWriter::boolean(bool value)
{
    separate();
    m_out += value ? "true" : "false";
    return *this;
}

JsonWriter &JsonWriter::null()
{
    separate();
    m_out += "null";
    return *this;
}

} // namespace lanternic
