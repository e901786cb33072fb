#pragma once

#include "contacts/ObjectContext.h"

struct ObjectModel;

/// The model of the contact store, named "Model".
const ObjectModel &contactModel();

/// The name in the form in which names are compared: letter case and the ways to encode an accent make no
/// difference.
QString matchedName(const QString &name);

/// Somebody the business knows: a name and a phone number, each a free text or absent.
class Contact : public ManagedObject
{
public:
    enum Attribute : size_t { Name, PhoneNo };

    explicit Contact(const ManagedObject &object)
        : ManagedObject(object)
    {
    }

    const std::optional<QString> &name() const { return value(Name); }
    const std::optional<QString> &phoneNo() const { return value(PhoneNo); }

protected:
    using ManagedObject::ManagedObject;
};

class Clients : public Contact
{
public:
    /// Adds a client to the context.
    explicit Clients(ObjectContext &context);
    static FetchRequest fetchRequest();
};

class TeamMembers : public Contact
{
public:
    /// Adds a team member to the context.
    explicit TeamMembers(ObjectContext &context);
    static FetchRequest fetchRequest();
};

/// The contacts' names in store order, an absent one as empty text.
QStringList contactNames(ObjectContext &context, const FetchRequest &request);
