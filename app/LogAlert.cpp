#include "app/LogAlert.h"

#include "platform/ui/Alert.h"

namespace quillon {

void LogAlert::AlertOKWithMessage(const QString& message, const QString& withText) {
    Alert::runModal(withText, message);
}

}  // namespace quillon
