#pragma once
#include <Foundation/Foundation.h>
NS_ASSUME_NONNULL_BEGIN
@class SPUUpdater;
@protocol SPUStandardUserDriverDelegate;
@protocol SPUUpdaterDelegate <NSObject>
@optional
- (void)updaterWillRelaunchApplication:(SPUUpdater *)updater;
@end
@interface SPUStandardUpdaterController : NSObject
- (instancetype)init NS_UNAVAILABLE;
- (instancetype)initWithStartingUpdater:(BOOL)startUpdater
                        updaterDelegate:(nullable id<SPUUpdaterDelegate>)updaterDelegate
                     userDriverDelegate:(nullable id<SPUStandardUserDriverDelegate>)userDriverDelegate;
- (void)checkForUpdates:(nullable id)sender;
@end
NS_ASSUME_NONNULL_END
