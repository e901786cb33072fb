#pragma once

#include "cloud/CloudDatabase.h"
#include "cloud/CloudHome.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

class CloudConnection;

/// The cloud over an SQL database. A thread of its own does what is asked for: several requests in one
/// transaction, and answers them when that is committed. What changes the database comes first, so that what
/// has been fetched does not pile up; otherwise requests are done in the order they came.
class SqlCloudContainer : public CloudContainer, private CloudDatabase
{
public:
    /// \param type  has to outlive the container
    SqlCloudContainer(const CloudHome &home, const CloudRecordType &type);
    /// Waits for the requests that the thread is at.
    ~SqlCloudContainer() override;

    void accountStatus(std::function<void(CloudAnswer<CloudAccount>)> handler) override;
    CloudDatabase &privateCloudDatabase() override { return *this; }
    QString description() const override { return home.description(); }
    bool finish(std::chrono::nanoseconds limit) override;

private:
    class Request;
    template <typename Result>
    class RequestFor;
    using Requests = std::vector<std::unique_ptr<Request>>;
    using SomeRequests = std::span<const std::unique_ptr<Request>>;

    void performQuery(const CloudQuery &query, const std::stop_token &stop,
                      std::function<void(CloudAnswer<std::vector<CloudRecord>>)> handler) override;
    void saveRecord(const CloudRecord &record, const std::stop_token &stop,
                    std::function<void(CloudAnswer<CloudRecord>)> handler) override;
    void deleteRecord(const CloudRecordID &id,
                      std::function<void(CloudAnswer<CloudRecordID>)> handler) override;

    void send(std::unique_ptr<Request> request);
    void drainQueue(const std::stop_token &stop);
    bool waitForRequests(const std::stop_token &stop);
    std::unique_ptr<Request> takeRequest();
    Requests takeAll();
    Requests performSome(CloudConnection &connection);

    static void failAll(CloudConnection &connection, SomeRequests requests, const CloudError &reason);
    static bool perform(CloudConnection &connection, SomeRequests requests);
    /// Begins a transaction, on a connection that is opened, or opened again, when need be.
    static bool begin(CloudConnection &connection);
    static bool performTogether(CloudConnection &connection, SomeRequests requests);
    static bool commit(CloudConnection &connection, SomeRequests requests);
    static bool recover(CloudConnection &connection, SomeRequests requests);

    CloudHome home;
    const CloudRecordType &type;
    std::mutex mutex;
    std::condition_variable_any changed;
    std::deque<std::unique_ptr<Request>> changes; ///< of the database
    std::deque<std::unique_ptr<Request>> questions;
    bool isBusy = false;
    std::jthread thread; ///< last: starts after everything that it uses, and ends before
};
