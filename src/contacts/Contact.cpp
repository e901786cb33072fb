#include "contacts/Contact.h"

#include "contacts/PersistentContainer.h"

using namespace Qt::StringLiterals;

namespace {

const QStringList attributes{u"name"_s, u"phoneNo"_s};
const Entity clients{u"Clients"_s, attributes};
const Entity teamMembers{u"TeamMembers"_s, attributes};

} // namespace

const ObjectModel &contactModel()
{
    static const ObjectModel model{.name = u"Model"_s, .version = 1, .entities = {&clients, &teamMembers}};
    return model;
}

QString matchedName(const QString &name)
{
    return name.toLower().normalized(QString::NormalizationForm_C);
}

Clients::Clients(ObjectContext &context)
    : Contact(clients, context)
{
}

FetchRequest Clients::fetchRequest()
{
    return {clients};
}

TeamMembers::TeamMembers(ObjectContext &context)
    : Contact(teamMembers, context)
{
}

FetchRequest TeamMembers::fetchRequest()
{
    return {teamMembers};
}

QStringList contactNames(ObjectContext &context, const FetchRequest &request)
{
    const std::vector<ManagedObject> objects = context.fetch(request);
    QStringList names;
    names.reserve(qsizetype(objects.size()));
    for (const ManagedObject &object : objects)
        names.append(object.value(Contact::Name).value_or(QString()));
    return names;
}
