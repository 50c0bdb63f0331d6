#pragma once
#include <SurfaceBase.h>
// The kernel's records for a region of a process and the file behind it.
#define PROC_PIDREGIONPATHINFO 8
struct proc_regioninfo {
    uint32_t pri_protection, pri_max_protection, pri_inheritance, pri_flags;
    uint64_t pri_offset;
    uint32_t pri_behavior, pri_user_wired_count, pri_user_tag, pri_pages_resident, pri_pages_shared_now_private,
        pri_pages_swapped_out, pri_pages_dirtied, pri_ref_count, pri_shadow_depth, pri_share_mode,
        pri_private_pages_resident, pri_shared_pages_resident, pri_obj_id, pri_depth;
    uint64_t pri_address, pri_size;
};
struct vinfo_stat {
    uint32_t vst_dev;
    uint16_t vst_mode, vst_nlink;
    uint64_t vst_ino;
    uid_t vst_uid;
    gid_t vst_gid;
    int64_t vst_atime, vst_atimensec, vst_mtime, vst_mtimensec, vst_ctime, vst_ctimensec, vst_birthtime,
        vst_birthtimensec;
    int64_t vst_size, vst_blocks;
    int32_t vst_blksize;
    uint32_t vst_flags, vst_gen, vst_rdev;
    int64_t vst_qspare[2];
};
struct vnode_info {
    struct vinfo_stat vi_stat;
    int vi_type, vi_pad;
    struct {
        int32_t val[2];
    } vi_fsid;
};
struct vnode_info_path {
    struct vnode_info vip_vi;
    char vip_path[1024];
};
struct proc_regionwithpathinfo {
    struct proc_regioninfo prp_prinfo;
    struct vnode_info_path prp_vip;
};
