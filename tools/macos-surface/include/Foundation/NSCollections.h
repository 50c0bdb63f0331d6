#pragma once
#include <Foundation/NSValues.h>
NS_ASSUME_NONNULL_BEGIN
typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable *_Nullable itemsPtr;
    unsigned long *_Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)count;
@end
@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
- (void)addObject:(ObjectType)object;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
+ (instancetype)dictionary;
@end

typedef NS_OPTIONS(NSUInteger, NSPropertyListMutabilityOptions) { NSPropertyListImmutable = 0 };
typedef NSPropertyListMutabilityOptions NSPropertyListReadOptions;
typedef NS_ENUM(NSUInteger, NSPropertyListFormat) { NSPropertyListXMLFormat_v1_0 = 100 };
@interface NSPropertyListSerialization : NSObject
+ (nullable id)propertyListWithData:(NSData *)data
                            options:(NSPropertyListReadOptions)options
                             format:(nullable NSPropertyListFormat *)format
                              error:(NSError *_Nullable *_Nullable)error;
@end
NS_ASSUME_NONNULL_END
