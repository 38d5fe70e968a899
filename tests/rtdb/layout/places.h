/// \file
/// Where the columns of the installation's tables lie: O(twin class, byte offset, column, type).
///
/// The offsets are those of a 32-bit program and count from the start of the class. A char[] is a range of bytes that
/// belongs to other programs. Written out here once more, apart from the list that the classes are made from.
#pragma once

// clang-format off

#define DTSDB_TWIN_PLACES(O) \
  O(analog, 0, id, char const*) \
  O(analog, 4, name, char const*) \
  O(analog, 8, value, real4) \
  O(analog, 12, quality, int4) \
  O(analog, 16, idx, int4) \
  O(analog, 20, f1, real4) \
  O(analog, 24, f2, real4) \
  O(analog, 28, f3, real4) \
  O(analog, 32, flag, int4) \
  O(bs, 0, id, int4) \
  O(bs, 4, name, char const*) \
  O(bs, 8, ikv, int4) \
  O(bs, 12, raw_12, char[4]) \
  O(bs, 16, f0, real8) \
  O(bs, 24, island, int4) \
  O(bs, 28, status, nat4) \
  O(bs, 32, flags, nat4) \
  O(bs, 36, next, int4) \
  O(bs, 40, prev, int4) \
  O(bs, 44, ibsl, int4) \
  O(bs, 48, v, real8) \
  O(bs, 56, a, real8) \
  O(bs, 64, f1, real8) \
  O(bs, 72, f2, real8) \
  O(bs, 80, f3, real8) \
  O(bs, 88, f4, real8) \
  O(bs, 96, n1, int4) \
  O(bsl, 0, id, int4) \
  O(bsl, 4, next, int4) \
  O(bsl, 8, prev, int4) \
  O(bsl, 12, kind, int4) \
  O(bsl, 16, ref, int4) \
  O(bus, 0, raw_0, char[80]) \
  O(bus, 80, id, char const*) \
  O(bus, 84, raw_84, char[4]) \
  O(bus, 88, kv, char const*) \
  O(bus, 92, nd, char const*) \
  O(bus, 96, ind, int4) \
  O(bus, 100, ibs, int4) \
  O(bus, 104, ana_v, char const*) \
  O(bus, 108, ana_a, char const*) \
  O(bus, 112, iana_v, int4) \
  O(bus, 116, iana_a, int4) \
  O(bus, 120, v, real8) \
  O(bus, 128, a, real8) \
  O(bus, 136, f1, real4) \
  O(bus, 140, f2, real4) \
  O(bus, 144, f3, real4) \
  O(bus, 148, raw_148, char[4]) \
  O(bus, 152, tp_status, nat4) \
  O(bus, 156, r_kv_bus, int4) \
  O(cb, 0, raw_0, char[40]) \
  O(cb, 40, id, char const*) \
  O(cb, 44, raw_44, char[8]) \
  O(cb, 52, kv, char const*) \
  O(cb, 56, flags, nat4) \
  O(cb, 60, status_id, char const*) \
  O(cb, 64, istatus, int4) \
  O(cb, 68, cb2, int4) \
  O(cb, 72, zcb2, int4) \
  O(cb, 76, nd, char const*) \
  O(cb, 80, ind, int4) \
  O(cb, 84, znd, char const*) \
  O(cb, 88, iznd, int4) \
  O(cb, 92, ibs, int4) \
  O(cb, 96, izbs, int4) \
  O(cb, 100, tp_status, nat4) \
  O(cb, 104, p, real4) \
  O(cb, 108, q, real4) \
  O(cb, 112, r_kv_cb, int4) \
  O(cb2, 0, id, char const*) \
  O(cb2, 4, icb, int4) \
  O(cb2, 8, r_nd_cb2, int4) \
  O(chnd, 0, id, int4) \
  O(chnd, 4, ind, int4) \
  O(chnd, 8, ibs_new, int4) \
  O(chnd, 12, ibs_old, int4) \
  O(chnd, 16, ikv, int4) \
  O(co, 0, id, char const*) \
  O(co, 4, raw_4, char[4]) \
  O(co, 8, f1, real4) \
  O(co, 12, f2, real4) \
  O(co, 16, f3, real4) \
  O(co, 20, f4, real4) \
  O(co, 24, f5, real4) \
  O(co, 28, f6, real4) \
  O(co, 32, f7, real4) \
  O(co, 36, f8, real4) \
  O(co, 40, r_co_dv, int4) \
  O(cp, 0, raw_0, char[160]) \
  O(cp, 160, id, char const*) \
  O(cp, 164, raw_164, char[8]) \
  O(cp, 172, kv, char const*) \
  O(cp, 176, nd, char const*) \
  O(cp, 180, ind, int4) \
  O(cp, 184, ibs, int4) \
  O(cp, 188, ana_q, char const*) \
  O(cp, 192, iana_q, int4) \
  O(cp, 196, status, nat4) \
  O(cp, 200, tp_status, nat4) \
  O(cp, 204, f1, real4) \
  O(cp, 208, f2, real4) \
  O(cp, 212, f3, real4) \
  O(cp, 216, f4, real4) \
  O(cp, 220, p, real4) \
  O(cp, 224, q, real4) \
  O(cp, 228, f5, real4) \
  O(cp, 232, raw_232, char[36]) \
  O(cp, 268, r_kv_cp, int4) \
  O(dln, 0, raw_0, char[160]) \
  O(dln, 160, id, char const*) \
  O(dln, 164, raw_164, char[8]) \
  O(dln, 172, dv, char const*) \
  O(dln, 176, nd, char const*) \
  O(dln, 180, ind, int4) \
  O(dln, 184, znd, char const*) \
  O(dln, 188, iznd, int4) \
  O(dln, 192, ibs, int4) \
  O(dln, 196, izbs, int4) \
  O(dln, 200, dln2, int4) \
  O(dln, 204, zdln2, int4) \
  O(dln, 208, st, char const*) \
  O(dln, 212, zst, char const*) \
  O(dln, 216, kv, char const*) \
  O(dln, 220, zkv, char const*) \
  O(dln, 224, ana_p, char const*) \
  O(dln, 228, ana_q, char const*) \
  O(dln, 232, ana_i, char const*) \
  O(dln, 236, zana_p, char const*) \
  O(dln, 240, zana_q, char const*) \
  O(dln, 244, zana_i, char const*) \
  O(dln, 248, iana_p, int4) \
  O(dln, 252, iana_q, int4) \
  O(dln, 256, iana_i, int4) \
  O(dln, 260, izana_p, int4) \
  O(dln, 264, izana_q, int4) \
  O(dln, 268, izana_i, int4) \
  O(dln, 272, status, nat4) \
  O(dln, 276, tp_status, nat4) \
  O(dln, 280, r_dv_dln, int4) \
  O(dln, 284, raw_284, char[176]) \
  O(dln, 460, p, real4) \
  O(dln, 464, q, real4) \
  O(dln, 468, raw_468, char[4]) \
  O(dln, 472, zp, real4) \
  O(dln, 476, zq, real4) \
  O(dln2, 0, id, char const*) \
  O(dln2, 4, p, real4) \
  O(dln2, 8, q, real4) \
  O(dln2, 12, i, real4) \
  O(dln2, 16, iana_p, int4) \
  O(dln2, 20, iana_q, int4) \
  O(dln2, 24, idln, int4) \
  O(dln2, 28, flags, nat4) \
  O(dln2, 32, r_nd, int4) \
  O(dv, 0, id, char const*) \
  O(dv, 4, raw_4, char[4]) \
  O(dv, 8, co, char const*) \
  O(dv, 12, f1, real4) \
  O(dv, 16, f2, real4) \
  O(dv, 20, f3, real4) \
  O(dv, 24, f4, real4) \
  O(dv, 28, f5, real4) \
  O(dv, 32, f6, real4) \
  O(dv, 36, f7, real4) \
  O(dv, 40, f8, real4) \
  O(dv, 44, r_co_dv, int4) \
  O(dv, 48, r_dv_st, int4) \
  O(dv, 52, r_dv_ln, int4) \
  O(dv, 56, r_dv_dln, int4) \
  O(global, 0, id, int4) \
  O(global, 4, f1, real4) \
  O(global, 8, bs_free, int4) \
  O(global, 12, bs_dead, int4) \
  O(global, 16, bs_live, int4) \
  O(global, 20, bsl_free, int4) \
  O(global, 24, bsl_head, int4) \
  O(global, 28, n1, int4) \
  O(global, 32, u1, nat4) \
  O(global, 36, time, nat4) \
  O(global, 40, valid, int4) \
  O(global, 44, check_time, nat4) \
  O(global, 48, invalid, int4) \
  O(global, 52, errors, int4) \
  O(island, 0, id, int4) \
  O(island, 4, ref_ibs, int4) \
  O(island, 8, ref_un, int4) \
  O(island, 12, ref_a, real4) \
  O(island, 16, f1, real4) \
  O(island, 20, f2, real4) \
  O(island, 24, f3, real4) \
  O(island, 28, ref_id, char const*) \
  O(island, 32, name, char const*) \
  O(kv, 0, raw_0, char[80]) \
  O(kv, 80, id, char const*) \
  O(kv, 84, raw_84, char[4]) \
  O(kv, 88, name, char const*) \
  O(kv, 92, st, char const*) \
  O(kv, 96, ibs, int4) \
  O(kv, 100, ibsl, int4) \
  O(kv, 104, vbase, real4) \
  O(kv, 108, vmax, real4) \
  O(kv, 112, vmin, real4) \
  O(kv, 116, f1, real4) \
  O(kv, 120, f2, real4) \
  O(kv, 124, n2, int4) \
  O(kv, 128, r_st_kv, int4) \
  O(kv, 132, r_kv_un, int4) \
  O(kv, 136, r_kv_cb, int4) \
  O(kv, 140, r_kv_ld, int4) \
  O(kv, 144, r_kv_cp, int4) \
  O(kv, 148, r_kv_bus, int4) \
  O(kv, 152, r_kv_zbr, int4) \
  O(kv, 156, r_kv_nd, int4) \
  O(ld, 0, raw_0, char[120]) \
  O(ld, 120, id, char const*) \
  O(ld, 124, raw_124, char[8]) \
  O(ld, 132, kv, char const*) \
  O(ld, 136, nd, char const*) \
  O(ld, 140, ind, int4) \
  O(ld, 144, ibs, int4) \
  O(ld, 148, ana_p, char const*) \
  O(ld, 152, ana_q, char const*) \
  O(ld, 156, ana_i, char const*) \
  O(ld, 160, ana_v, char const*) \
  O(ld, 164, iana_p, int4) \
  O(ld, 168, iana_q, int4) \
  O(ld, 172, iana_i, int4) \
  O(ld, 176, iana_v, int4) \
  O(ld, 180, status, nat4) \
  O(ld, 184, tp_status, nat4) \
  O(ld, 188, f1, real4) \
  O(ld, 192, f2, real4) \
  O(ld, 196, p, real4) \
  O(ld, 200, q, real4) \
  O(ld, 204, f3, real4) \
  O(ld, 208, f4, real4) \
  O(ld, 212, f5, real4) \
  O(ld, 216, f6, real4) \
  O(ld, 220, f7, real4) \
  O(ld, 224, a, real4) \
  O(ld, 228, f9, real4) \
  O(ld, 232, ref, int4) \
  O(ld, 236, raw_236, char[32]) \
  O(ld, 268, r_kv_ld, int4) \
  O(ln, 0, raw_0, char[160]) \
  O(ln, 160, id, char const*) \
  O(ln, 164, raw_164, char[4]) \
  O(ln, 168, type, int4) \
  O(ln, 172, dv, char const*) \
  O(ln, 176, nd, char const*) \
  O(ln, 180, ind, int4) \
  O(ln, 184, znd, char const*) \
  O(ln, 188, iznd, int4) \
  O(ln, 192, raw_192, char[4]) \
  O(ln, 196, ibs, int4) \
  O(ln, 200, izbs, int4) \
  O(ln, 204, ln2, int4) \
  O(ln, 208, zln2, int4) \
  O(ln, 212, st, char const*) \
  O(ln, 216, zst, char const*) \
  O(ln, 220, kv, char const*) \
  O(ln, 224, zkv, char const*) \
  O(ln, 228, ana_p, char const*) \
  O(ln, 232, ana_q, char const*) \
  O(ln, 236, ana_i, char const*) \
  O(ln, 240, zana_p, char const*) \
  O(ln, 244, zana_q, char const*) \
  O(ln, 248, zana_i, char const*) \
  O(ln, 252, iana_p, int4) \
  O(ln, 256, iana_q, int4) \
  O(ln, 260, iana_i, int4) \
  O(ln, 264, izana_p, int4) \
  O(ln, 268, izana_q, int4) \
  O(ln, 272, izana_i, int4) \
  O(ln, 276, f1, real4) \
  O(ln, 280, f2, real4) \
  O(ln, 284, f3, real4) \
  O(ln, 288, f4, real4) \
  O(ln, 292, f5, real4) \
  O(ln, 296, f6, real4) \
  O(ln, 300, f7, real4) \
  O(ln, 304, f8, real4) \
  O(ln, 308, p, real4) \
  O(ln, 312, q, real4) \
  O(ln, 316, i, real4) \
  O(ln, 320, zp, real4) \
  O(ln, 324, zq, real4) \
  O(ln, 328, zi, real4) \
  O(ln, 332, f9, real4) \
  O(ln, 336, f10, real4) \
  O(ln, 340, raw_340, char[32]) \
  O(ln, 372, status, nat4) \
  O(ln, 376, tp_status, nat4) \
  O(ln, 380, r_dv_ln, int4) \
  O(ln2, 0, id, char const*) \
  O(ln2, 4, p, real4) \
  O(ln2, 8, q, real4) \
  O(ln2, 12, i, real4) \
  O(ln2, 16, iana_p, int4) \
  O(ln2, 20, iana_q, int4) \
  O(ln2, 24, iln, int4) \
  O(ln2, 28, flags, nat4) \
  O(ln2, 32, r_nd, int4) \
  O(nd, 0, id, char const*) \
  O(nd, 4, ibs, int4) \
  O(nd, 8, ibs0, int4) \
  O(nd, 12, flags, nat4) \
  O(nd, 16, next, int4) \
  O(nd, 20, n1, int4) \
  O(nd, 24, r_kv_nd, int4) \
  O(nd, 28, r_nd_cb2, int4) \
  O(nd, 32, r_nd_ln2, int4) \
  O(nd, 36, r_nd_xf2, int4) \
  O(nd, 40, r_nd_zbr2, int4) \
  O(nd, 44, r_nd_dln2, int4) \
  O(r_co_dv, 0, co_id, char const*) \
  O(r_co_dv, 4, dv_id, char const*) \
  O(r_co_dv, 8, ico, int4) \
  O(r_co_dv, 12, idv, int4) \
  O(r_co_dv, 16, next, int4) \
  O(r_co_dv, 20, prev, int4) \
  O(r_dv_dln, 0, dv_id, char const*) \
  O(r_dv_dln, 4, dln_id, char const*) \
  O(r_dv_dln, 8, idv, int4) \
  O(r_dv_dln, 12, idln, int4) \
  O(r_dv_dln, 16, next, int4) \
  O(r_dv_dln, 20, prev, int4) \
  O(r_dv_ln, 0, dv_id, char const*) \
  O(r_dv_ln, 4, ln_id, char const*) \
  O(r_dv_ln, 8, idv, int4) \
  O(r_dv_ln, 12, iln, int4) \
  O(r_dv_ln, 16, next, int4) \
  O(r_dv_ln, 20, prev, int4) \
  O(r_dv_st, 0, dv_id, char const*) \
  O(r_dv_st, 4, st_id, char const*) \
  O(r_dv_st, 8, idv, int4) \
  O(r_dv_st, 12, ist, int4) \
  O(r_dv_st, 16, next, int4) \
  O(r_dv_st, 20, prev, int4) \
  O(r_kv_bus, 0, kv_id, char const*) \
  O(r_kv_bus, 4, bus_id, char const*) \
  O(r_kv_bus, 8, ikv, int4) \
  O(r_kv_bus, 12, ibus, int4) \
  O(r_kv_bus, 16, next, int4) \
  O(r_kv_bus, 20, prev, int4) \
  O(r_kv_cb, 0, kv_id, char const*) \
  O(r_kv_cb, 4, cb_id, char const*) \
  O(r_kv_cb, 8, ikv, int4) \
  O(r_kv_cb, 12, icb, int4) \
  O(r_kv_cb, 16, next, int4) \
  O(r_kv_cb, 20, prev, int4) \
  O(r_kv_cp, 0, kv_id, char const*) \
  O(r_kv_cp, 4, cp_id, char const*) \
  O(r_kv_cp, 8, ikv, int4) \
  O(r_kv_cp, 12, icp, int4) \
  O(r_kv_cp, 16, next, int4) \
  O(r_kv_cp, 20, prev, int4) \
  O(r_kv_ld, 0, kv_id, char const*) \
  O(r_kv_ld, 4, ld_id, char const*) \
  O(r_kv_ld, 8, ikv, int4) \
  O(r_kv_ld, 12, ild, int4) \
  O(r_kv_ld, 16, next, int4) \
  O(r_kv_ld, 20, prev, int4) \
  O(r_kv_nd, 0, kv_id, char const*) \
  O(r_kv_nd, 4, nd_id, char const*) \
  O(r_kv_nd, 8, ikv, int4) \
  O(r_kv_nd, 12, ind, int4) \
  O(r_kv_nd, 16, next, int4) \
  O(r_kv_nd, 20, prev, int4) \
  O(r_kv_un, 0, kv_id, char const*) \
  O(r_kv_un, 4, un_id, char const*) \
  O(r_kv_un, 8, ikv, int4) \
  O(r_kv_un, 12, iun, int4) \
  O(r_kv_un, 16, next, int4) \
  O(r_kv_un, 20, prev, int4) \
  O(r_kv_zbr, 0, kv_id, char const*) \
  O(r_kv_zbr, 4, zbr_id, char const*) \
  O(r_kv_zbr, 8, ikv, int4) \
  O(r_kv_zbr, 12, izbr, int4) \
  O(r_kv_zbr, 16, next, int4) \
  O(r_kv_zbr, 20, prev, int4) \
  O(r_nd_cb2, 0, nd_id, char const*) \
  O(r_nd_cb2, 4, cb2_id, char const*) \
  O(r_nd_cb2, 8, ind, int4) \
  O(r_nd_cb2, 12, icb2, int4) \
  O(r_nd_cb2, 16, next, int4) \
  O(r_nd_cb2, 20, prev, int4) \
  O(r_nd_dln2, 0, nd_id, char const*) \
  O(r_nd_dln2, 4, dln2_id, char const*) \
  O(r_nd_dln2, 8, ind, int4) \
  O(r_nd_dln2, 12, idln2, int4) \
  O(r_nd_dln2, 16, next, int4) \
  O(r_nd_dln2, 20, prev, int4) \
  O(r_nd_ln2, 0, nd_id, char const*) \
  O(r_nd_ln2, 4, ln2_id, char const*) \
  O(r_nd_ln2, 8, ind, int4) \
  O(r_nd_ln2, 12, iln2, int4) \
  O(r_nd_ln2, 16, next, int4) \
  O(r_nd_ln2, 20, prev, int4) \
  O(r_nd_xf2, 0, nd_id, char const*) \
  O(r_nd_xf2, 4, xf2_id, char const*) \
  O(r_nd_xf2, 8, ind, int4) \
  O(r_nd_xf2, 12, ixf2, int4) \
  O(r_nd_xf2, 16, next, int4) \
  O(r_nd_xf2, 20, prev, int4) \
  O(r_nd_zbr2, 0, nd_id, char const*) \
  O(r_nd_zbr2, 4, zbr2_id, char const*) \
  O(r_nd_zbr2, 8, ind, int4) \
  O(r_nd_zbr2, 12, izbr2, int4) \
  O(r_nd_zbr2, 16, next, int4) \
  O(r_nd_zbr2, 20, prev, int4) \
  O(r_st_kv, 0, st_id, char const*) \
  O(r_st_kv, 4, kv_id, char const*) \
  O(r_st_kv, 8, ist, int4) \
  O(r_st_kv, 12, ikv, int4) \
  O(r_st_kv, 16, next, int4) \
  O(r_st_kv, 20, prev, int4) \
  O(r_st_xf, 0, st_id, char const*) \
  O(r_st_xf, 4, xf_id, char const*) \
  O(r_st_xf, 8, ist, int4) \
  O(r_st_xf, 12, ixf, int4) \
  O(r_st_xf, 16, next, int4) \
  O(r_st_xf, 20, prev, int4) \
  O(st, 0, id, char const*) \
  O(st, 4, raw_4, char[4]) \
  O(st, 8, dv, char const*) \
  O(st, 12, type, int4) \
  O(st, 16, flag, int4) \
  O(st, 20, f1, real4) \
  O(st, 24, f2, real4) \
  O(st, 28, f3, real4) \
  O(st, 32, f4, real4) \
  O(st, 36, r_dv_st, int4) \
  O(st, 40, r_st_kv, int4) \
  O(st, 44, r_st_xf, int4) \
  O(status, 0, id, char const*) \
  O(status, 4, name, char const*) \
  O(status, 8, value, int4) \
  O(status, 12, quality, int4) \
  O(tpl, 0, id, int4) \
  O(tpl, 4, kind, int4) \
  O(tpl, 8, n1, int4) \
  O(tpl, 12, name, char const*) \
  O(tpl, 16, n2, int4) \
  O(tpl, 20, n3, int4) \
  O(tpl, 24, time, nat4) \
  O(tpl, 28, event, char const*) \
  O(tptrace, 0, id, int4) \
  O(tptrace, 4, name, char const*) \
  O(tptrace, 8, type, int4) \
  O(tptrace, 12, n1, int4) \
  O(tptrace, 16, status, int4) \
  O(tptrace, 20, time, nat4) \
  O(un, 0, raw_0, char[80]) \
  O(un, 80, id, char const*) \
  O(un, 84, raw_84, char[4]) \
  O(un, 88, kv, char const*) \
  O(un, 92, nd, char const*) \
  O(un, 96, ind, int4) \
  O(un, 100, ibs, int4) \
  O(un, 104, pmax, real4) \
  O(un, 108, f1, real4) \
  O(un, 112, pcur, real4) \
  O(un, 116, f2, real4) \
  O(un, 120, f3, real4) \
  O(un, 124, f4, real4) \
  O(un, 128, f5, real4) \
  O(un, 132, f6, real4) \
  O(un, 136, ana_p, char const*) \
  O(un, 140, iana_p, int4) \
  O(un, 144, ana_q, char const*) \
  O(un, 148, iana_q, int4) \
  O(un, 152, ana_v, char const*) \
  O(un, 156, iana_v, int4) \
  O(un, 160, raw_160, char[8]) \
  O(un, 168, p, real4) \
  O(un, 172, q, real4) \
  O(un, 176, f7, real4) \
  O(un, 180, a, real4) \
  O(un, 184, f8, real4) \
  O(un, 188, ref, int4) \
  O(un, 192, raw_192, char[52]) \
  O(un, 244, f9, real4) \
  O(un, 248, f10, real4) \
  O(un, 252, raw_252, char[16]) \
  O(un, 268, status, nat4) \
  O(un, 272, tp_status, nat4) \
  O(un, 276, r_kv_un, int4) \
  O(xf, 0, raw_0, char[160]) \
  O(xf, 160, id, char const*) \
  O(xf, 164, raw_164, char[8]) \
  O(xf, 172, type, int4) \
  O(xf, 176, f0, real4) \
  O(xf, 180, st, char const*) \
  O(xf, 184, kv, char const*) \
  O(xf, 188, zkv, char const*) \
  O(xf, 192, nd, char const*) \
  O(xf, 196, znd, char const*) \
  O(xf, 200, ind, int4) \
  O(xf, 204, iznd, int4) \
  O(xf, 208, ibs, int4) \
  O(xf, 212, izbs, int4) \
  O(xf, 216, xf2, int4) \
  O(xf, 220, zxf2, int4) \
  O(xf, 224, ana_p, char const*) \
  O(xf, 228, ana_q, char const*) \
  O(xf, 232, ana_i, char const*) \
  O(xf, 236, ana_t, char const*) \
  O(xf, 240, zana_p, char const*) \
  O(xf, 244, zana_q, char const*) \
  O(xf, 248, zana_i, char const*) \
  O(xf, 252, zana_t, char const*) \
  O(xf, 256, iana_p, int4) \
  O(xf, 260, iana_q, int4) \
  O(xf, 264, iana_i, int4) \
  O(xf, 268, iana_t, int4) \
  O(xf, 272, izana_p, int4) \
  O(xf, 276, izana_q, int4) \
  O(xf, 280, izana_i, int4) \
  O(xf, 284, izana_t, int4) \
  O(xf, 288, p, real4) \
  O(xf, 292, q, real4) \
  O(xf, 296, i, real4) \
  O(xf, 300, zp, real4) \
  O(xf, 304, zq, real4) \
  O(xf, 308, zi, real4) \
  O(xf, 312, f1, real4) \
  O(xf, 316, f2, real4) \
  O(xf, 320, status, nat4) \
  O(xf, 324, tp_status, nat4) \
  O(xf, 328, r_st_xf, int4) \
  O(xf, 332, raw_332, char[12]) \
  O(xf, 344, f3, real4) \
  O(xf, 348, f4, real4) \
  O(xf, 352, f5, real4) \
  O(xf, 356, f6, real4) \
  O(xf, 360, f7, real4) \
  O(xf, 364, f8, real4) \
  O(xf, 368, f9, real4) \
  O(xf, 372, raw_372, char[28]) \
  O(xf, 400, f10, real4) \
  O(xf, 404, n1, int4) \
  O(xf, 408, n2, int4) \
  O(xf, 412, f11, real4) \
  O(xf, 416, f12, real4) \
  O(xf, 420, n3, int4) \
  O(xf, 424, n4, int4) \
  O(xf, 428, n5, int4) \
  O(xf, 432, n6, int4) \
  O(xf, 436, f13, real4) \
  O(xf, 440, f14, real4) \
  O(xf, 444, n7, int4) \
  O(xf, 448, n8, int4) \
  O(xf, 452, flag, int4) \
  O(xf2, 0, id, char const*) \
  O(xf2, 4, p, real4) \
  O(xf2, 8, q, real4) \
  O(xf2, 12, i, real4) \
  O(xf2, 16, iana_p, int4) \
  O(xf2, 20, iana_q, int4) \
  O(xf2, 24, ixf, int4) \
  O(xf2, 28, flags, nat4) \
  O(xf2, 32, r_nd, int4) \
  O(zbr, 0, id, char const*) \
  O(zbr, 4, raw_4, char[4]) \
  O(zbr, 8, cb, char const*) \
  O(zbr, 12, icb, int4) \
  O(zbr, 16, ind, int4) \
  O(zbr, 20, iznd, int4) \
  O(zbr, 24, ibs, int4) \
  O(zbr, 28, izbs, int4) \
  O(zbr, 32, zbr2, int4) \
  O(zbr, 36, zzbr2, int4) \
  O(zbr, 40, ana_p, char const*) \
  O(zbr, 44, ana_q, char const*) \
  O(zbr, 48, ana_i, char const*) \
  O(zbr, 52, iana_p, int4) \
  O(zbr, 56, iana_q, int4) \
  O(zbr, 60, iana_i, int4) \
  O(zbr, 64, p, real4) \
  O(zbr, 68, q, real4) \
  O(zbr, 72, i, real4) \
  O(zbr, 76, status, nat4) \
  O(zbr, 80, tp_status, nat4) \
  O(zbr, 84, r_kv_zbr, int4) \
  O(zbr2, 0, id, char const*) \
  O(zbr2, 4, p, real4) \
  O(zbr2, 8, q, real4) \
  O(zbr2, 12, i, real4) \
  O(zbr2, 16, iana_p, int4) \
  O(zbr2, 20, iana_q, int4) \
  O(zbr2, 24, izbr, int4) \
  O(zbr2, 28, flags, nat4) \
  O(zbr2, 32, r_nd, int4)

// clang-format on
