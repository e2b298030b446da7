#pragma once

#include "model/jsonsource.h"
#include "model/sourceresult.h"

#include <QHash>
#include <QString>

// What the readers of the smaller platforms share: a result begun for the source, components
// added by key, and the rule that settles a page's health.
namespace lanternic::ReaderKit {

SourceResult start(const JSONSource &source);

// As for every platform: components alone decide when there are any; a document without
// them takes the page's own health, and the first incident's name (else the health's label)
// as its detail.
SourceResult settle(SourceResult result, Health pageHealth);

void addComponent(SourceResult &result, const QString &key, const QString &name, Health health,
                  const QString &status);

// A component named by several incidents is at the worst of them; known maps keys to places.
void worstOf(SourceResult &result, QHash<QString, qsizetype> &known, const QString &key,
             const QString &name, Health health, const QString &status);

Health worse(Health a, Health b);

// Status words shared by Better Stack and OpenStatus.
Health wordHealth(const QString &word);

} // namespace lanternic::ReaderKit
