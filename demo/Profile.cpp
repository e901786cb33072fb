#include "Profile.h"

#include "cloud/TaskRecord.h"

Profile::Profile(TaskManager &manager, NotificationCenter &systemNotices, const CloudHome &cloudHome,
                 const Folders &folders)
    : screens({manager, notices, systemNotices, colorPanel, folders.data})
    , container(cloudHome, taskRecordType())
    , cloud(manager, notices, container, cloudAnswers)
    , window(manager, notices, systemNotices, screens, cloud, folders.documents, folders.state)
{
    window.show();
}
