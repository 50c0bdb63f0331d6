#pragma once
#include <Foundation/Foundation.h>
NS_ASSUME_NONNULL_BEGIN
enum { kSMErrorAlreadyRegistered = 12 };
typedef NS_ENUM(NSInteger, SMAppServiceStatus) {
    SMAppServiceStatusNotRegistered = 0,
    SMAppServiceStatusEnabled = 1,
    SMAppServiceStatusRequiresApproval = 2,
    SMAppServiceStatusNotFound = 3
} SURFACE_SINCE(13.0);
SURFACE_SINCE(13.0)
@interface SMAppService : NSObject
@property (class, readonly) SMAppService *mainAppService;
@property (readonly) SMAppServiceStatus status;
+ (instancetype)daemonServiceWithPlistName:(NSString *)plistName;
- (BOOL)registerAndReturnError:(NSError *_Nullable *_Nullable)error;
- (BOOL)unregisterAndReturnError:(NSError *_Nullable *_Nullable)error;
+ (void)openSystemSettingsLoginItems;
@end
NS_ASSUME_NONNULL_END
