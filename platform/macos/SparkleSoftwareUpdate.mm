#include "SparkleSoftwareUpdate.h"

#include "support/MainThread.h"

#import <Sparkle/Sparkle.h>

#include <utility>

using namespace wakeloft;

/// The updater asks its delegate only for what it finds there; so that a slip of the pen is found, too.
@protocol UpdateRelaunching <SPUUpdaterDelegate>
@required
- (void)updaterWillRelaunchApplication:(SPUUpdater*)updater;
@end

@interface SparkleUpdateDelegate : NSObject <UpdateRelaunching>
- (void)observeRelaunch:(std::function<void()>)relaunching;
@end

@implementation SparkleUpdateDelegate {
    std::function<void()> _relaunching;
}

- (void)observeRelaunch:(std::function<void()>)relaunching {
    _relaunching = std::move(relaunching);
}

- (void)updaterWillRelaunchApplication:(SPUUpdater*)updater {
    static_cast<void>(updater);
    requireMainThread("the relaunch for an update");
    if (_relaunching)
        _relaunching();
}

@end

namespace wakeloft {

struct SparkleSoftwareUpdate::Updater {
    SparkleUpdateDelegate* delegate; ///< which the controller holds weakly
    SPUStandardUpdaterController* controller;
};

SparkleSoftwareUpdate::SparkleSoftwareUpdate() : updater_(std::make_unique<Updater>()) {
    requireMainThread("SparkleSoftwareUpdate");
    updater_->delegate = [[SparkleUpdateDelegate alloc] init];
    updater_->controller = [[SPUStandardUpdaterController alloc] initWithStartingUpdater:YES
                                                                         updaterDelegate:updater_->delegate
                                                                      userDriverDelegate:nil];
}

SparkleSoftwareUpdate::~SparkleSoftwareUpdate() = default;

void SparkleSoftwareUpdate::checkForUpdates() {
    requireMainThread("SparkleSoftwareUpdate::checkForUpdates");
    [updater_->controller checkForUpdates:nil];
}

void SparkleSoftwareUpdate::observeRelaunch(std::function<void()> relaunching) {
    [updater_->delegate observeRelaunch:std::move(relaunching)];
}

} // namespace wakeloft
