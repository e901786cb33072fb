#include "Profile.h"

#include "cloud/TaskRecord.h"
#include "model/TaskManager.h"

Profile::Profile(TaskManager &manager, NotificationCenter &systemNotices, const CloudHome &cloudHome,
                 const GatewayAddress &gateway, const Folders &folders)
    : scheduleRuns(manager.defaults, gateway)
    , screens({manager, notices, systemNotices, colorPanel, folders.data}, scheduleRuns,
              {folders.documents, folders.state})
    , container(cloudHome, taskRecordType())
    , cloud(manager, notices, container)
    , window(manager, notices, systemNotices, screens, cloud, folders.documents, folders.state)
{
    window.show();
}
