// The calls of the host's CAM library "ORVEX_API" that the plug-in makes. The host declares them; standard
// strings, vectors and futures cross the boundary, so host and plug-in share one standard library.
#pragma once

#include "run/orvexapi_export.h"
#include "run/progressvalue.h"

#include <string>
#include <vector>

namespace ORVEX::API {

// One record of a job's layer matrix; all texts are UTF-8.
struct layer_info
{
    std::string context; // "BOARD", or another word for a layer that is no part of the physical board
    std::string type; // "SIGNAL", "POWER_GROUND", "SOLDER_MASK", "SILK_SCREEN", "SOLDER_PASTE", "DRILL", ...
    std::string name;
    std::string old_name;
    std::string polarity; // "POSITIVE" or "NEGATIVE"
    std::string start_name;
    std::string end_name;
    std::string add_type;
    std::string color;
    int row = 0; // the matrix row, counted from 1
};

enum class export_type : int { gerber = 0, gds = 1 };

struct point
{
    double x = 0.0;
    double y = 0.0;
};

// Reads the layer matrix of `job`: the names of its steps into `names`, one record a layer, in matrix order,
// into `layers`. Returns an empty text, or what went wrong.
ORVEX_API_DECL std::string get_matrix(const std::string &job, std::vector<std::string> &names,
                                      std::vector<layer_info> &layers);

// Exports one layer of one step of a job to the file `file_name`; blocks until it is done and reports 0 to
// 100 through `progress` (-1 after a failure). Returns whether the file was written; throws what `progress`
// throws on a cancel. What was there before stays unless the whole new file has been written.
//   file_name       UTF-8; "/" and backslashes may be mixed; its folders must exist
//   dbu             database unit of a GDSII file in micrometres; 0 or less means 0.001
//   resize          nanometres by which positive features grow, half of it to each side; holes and negative
//                   features shrink by as much (and the other way round when it is negative)
//   is_negative     the area of the step's profile (without one: the extent of the layer) less the layer
//   is_scale        x_scale and y_scale count
//   is_mirror       x becomes -x for axis "X", y becomes -y for "Y"
//   is_rotate       angle counts: degrees, counter-clockwise
//   is_profile_top  adds the step's profile (GDSII: datatype 1)
// The order is resize, negative, scale, mirror, rotation; the last three about the step's datum. The other
// parameters mean nothing to the open library.
ORVEX_API_DECL bool layer_export(const std::string &job, const std::string &step, const std::string &layer,
                                 export_type type, std::string file_name,
                                 ORVEX::COMMON::progress_value<void> *progress, double dbu, double resize,
                                 bool is_negative, bool is_mirror, bool is_rotate, bool is_scale,
                                 int option_int_1, int option_int_2, int option_int_3, int option_int_4,
                                 int option_int_5, int option_int_6, bool is_profile_top, double angle,
                                 std::string axis, bool flag_option_1, double x_scale, double y_scale,
                                 bool flag_option_2, int mode_1, int mode_2, int mode_3, int mode_4,
                                 std::vector<std::vector<point>> polygons, int mode_5);

} // namespace ORVEX::API

namespace ORVEX::DB {

// Whether every export is also to be recorded in the host's database.
ORVEX_API_DECL bool get_SaveFlag();

// Records an export in the host's database; the parameters are those of layer_export.
ORVEX_API_DECL void layer_export_db_save(
    const std::string &job, const std::string &step, const std::string &layer, ORVEX::API::export_type type,
    std::string file_name, ORVEX::COMMON::progress_value<void> *progress, double dbu, double resize,
    bool is_negative, bool is_mirror, bool is_rotate, bool is_scale, int option_int_1, int option_int_2,
    int option_int_3, int option_int_4, int option_int_5, int option_int_6, bool is_profile_top, double angle,
    std::string axis, bool flag_option_1, double x_scale, double y_scale, bool flag_option_2);

} // namespace ORVEX::DB
