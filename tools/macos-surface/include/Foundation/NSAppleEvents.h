// The messages by which other programs, and the system, ask something of this one.
#pragma once
#include <Foundation/NSValues.h>
NS_ASSUME_NONNULL_BEGIN
typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
typedef FourCharCode AEKeyword;
@interface NSAppleEventDescriptor : NSObject <NSCopying>
@property (readonly) OSType enumCodeValue;
@property (readonly) AEEventClass eventClass;
@property (readonly) AEEventID eventID;
- (nullable NSAppleEventDescriptor *)paramDescriptorForKeyword:(AEKeyword)keyword;
- (nullable NSAppleEventDescriptor *)attributeDescriptorForKeyword:(AEKeyword)keyword;
@end
@interface NSAppleEventManager : NSObject
@property (nullable, readonly, retain) NSAppleEventDescriptor *currentAppleEvent;
+ (NSAppleEventManager *)sharedAppleEventManager;
@end
NS_ASSUME_NONNULL_END
