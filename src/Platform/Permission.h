#pragma once

#include <vector>

namespace tarn::platform {

// What a page may use only if the user lets it. Notifications are not among them: they are the application's own.
enum class Permission { camera, microphone, screen, location, clipboard, pointerLock };
enum class PermissionState { ask, granted, denied };

struct PermissionRequest {
    // At least one; they are given or refused together.
    std::vector<Permission> permissions;
};

}
