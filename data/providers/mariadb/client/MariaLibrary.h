#pragma once

// The functions of libmariadb that the program calls, under their own names: within the namespace
// they hide those of its header, so that nobody calls one that is not loaded yet.

#include <mysql.h>

#include "data/providers/LateLibrary.h"

namespace tessel {

inline constexpr LateLibrary mariaLibrary("libmariadb.so.3", "MariaDB", "libmariadb3");

/// A function of libmariadb, which is loaded with the first that is called.
template <class Signature>
class MariaFunction : public LateFunction<Signature> {
 public:
  constexpr explicit MariaFunction(const char* name)
      : LateFunction<Signature>(mariaLibrary, name) {}
};

inline constinit const MariaFunction<decltype(::mariadb_connection)> mariadb_connection{
    "mariadb_connection"};
inline constinit const MariaFunction<decltype(::mariadb_field_attr)> mariadb_field_attr{
    "mariadb_field_attr"};
inline constinit const MariaFunction<decltype(::mariadb_get_infov)> mariadb_get_infov{
    "mariadb_get_infov"};
inline constinit const MariaFunction<decltype(::mysql_affected_rows)> mysql_affected_rows{
    "mysql_affected_rows"};
inline constinit const MariaFunction<decltype(::mysql_character_set_name)> mysql_character_set_name{
    "mysql_character_set_name"};
inline constinit const MariaFunction<decltype(::mysql_close)> mysql_close{"mysql_close"};
inline constinit const MariaFunction<decltype(::mysql_errno)> mysql_errno{"mysql_errno"};
inline constinit const MariaFunction<decltype(::mysql_error)> mysql_error{"mysql_error"};
inline constinit const MariaFunction<decltype(::mysql_fetch_field_direct)> mysql_fetch_field_direct{
    "mysql_fetch_field_direct"};
inline constinit const MariaFunction<decltype(::mysql_fetch_lengths)> mysql_fetch_lengths{
    "mysql_fetch_lengths"};
inline constinit const MariaFunction<decltype(::mysql_fetch_row)> mysql_fetch_row{
    "mysql_fetch_row"};
inline constinit const MariaFunction<decltype(::mysql_field_count)> mysql_field_count{
    "mysql_field_count"};
inline constinit const MariaFunction<decltype(::mysql_free_result)> mysql_free_result{
    "mysql_free_result"};
inline constinit const MariaFunction<decltype(::mysql_get_client_info)> mysql_get_client_info{
    "mysql_get_client_info"};
inline constinit const MariaFunction<decltype(::mysql_get_host_info)> mysql_get_host_info{
    "mysql_get_host_info"};
inline constinit const MariaFunction<decltype(::mysql_get_server_info)> mysql_get_server_info{
    "mysql_get_server_info"};
inline constinit const MariaFunction<decltype(::mysql_get_socket)> mysql_get_socket{
    "mysql_get_socket"};
inline constinit const MariaFunction<decltype(::mysql_get_ssl_cipher)> mysql_get_ssl_cipher{
    "mysql_get_ssl_cipher"};
inline constinit const MariaFunction<decltype(::mysql_init)> mysql_init{"mysql_init"};
inline constinit const MariaFunction<decltype(::mysql_more_results)> mysql_more_results{
    "mysql_more_results"};
inline constinit const MariaFunction<decltype(::mysql_next_result)> mysql_next_result{
    "mysql_next_result"};
inline constinit const MariaFunction<decltype(::mysql_num_fields)> mysql_num_fields{
    "mysql_num_fields"};
inline constinit const MariaFunction<decltype(::mysql_options)> mysql_options{"mysql_options"};
inline constinit const MariaFunction<decltype(::mysql_options4)> mysql_options4{"mysql_options4"};
inline constinit const MariaFunction<decltype(::mysql_real_connect_cont)> mysql_real_connect_cont{
    "mysql_real_connect_cont"};
inline constinit const MariaFunction<decltype(::mysql_real_connect_start)> mysql_real_connect_start{
    "mysql_real_connect_start"};
inline constinit const MariaFunction<decltype(::mysql_real_escape_string)> mysql_real_escape_string{
    "mysql_real_escape_string"};
inline constinit const MariaFunction<decltype(::mysql_real_query)> mysql_real_query{
    "mysql_real_query"};
inline constinit const MariaFunction<decltype(::mysql_select_db)> mysql_select_db{
    "mysql_select_db"};
inline constinit const MariaFunction<decltype(::mysql_server_init)> mysql_server_init{
    "mysql_server_init"};
inline constinit const MariaFunction<decltype(::mysql_set_local_infile_handler)>
    mysql_set_local_infile_handler{"mysql_set_local_infile_handler"};
inline constinit const MariaFunction<decltype(::mysql_sqlstate)> mysql_sqlstate{"mysql_sqlstate"};
inline constinit const MariaFunction<decltype(::mysql_stmt_affected_rows)> mysql_stmt_affected_rows{
    "mysql_stmt_affected_rows"};
inline constinit const MariaFunction<decltype(::mysql_stmt_bind_param)> mysql_stmt_bind_param{
    "mysql_stmt_bind_param"};
inline constinit const MariaFunction<decltype(::mysql_stmt_bind_result)> mysql_stmt_bind_result{
    "mysql_stmt_bind_result"};
inline constinit const MariaFunction<decltype(::mysql_stmt_close)> mysql_stmt_close{
    "mysql_stmt_close"};
inline constinit const MariaFunction<decltype(::mysql_stmt_errno)> mysql_stmt_errno{
    "mysql_stmt_errno"};
inline constinit const MariaFunction<decltype(::mysql_stmt_error)> mysql_stmt_error{
    "mysql_stmt_error"};
inline constinit const MariaFunction<decltype(::mysql_stmt_execute)> mysql_stmt_execute{
    "mysql_stmt_execute"};
inline constinit const MariaFunction<decltype(::mysql_stmt_fetch)> mysql_stmt_fetch{
    "mysql_stmt_fetch"};
inline constinit const MariaFunction<decltype(::mysql_stmt_fetch_column)> mysql_stmt_fetch_column{
    "mysql_stmt_fetch_column"};
inline constinit const MariaFunction<decltype(::mysql_stmt_field_count)> mysql_stmt_field_count{
    "mysql_stmt_field_count"};
inline constinit const MariaFunction<decltype(::mysql_stmt_init)> mysql_stmt_init{
    "mysql_stmt_init"};
inline constinit const MariaFunction<decltype(::mysql_stmt_prepare)> mysql_stmt_prepare{
    "mysql_stmt_prepare"};
inline constinit const MariaFunction<decltype(::mysql_stmt_result_metadata)>
    mysql_stmt_result_metadata{"mysql_stmt_result_metadata"};
inline constinit const MariaFunction<decltype(::mysql_stmt_sqlstate)> mysql_stmt_sqlstate{
    "mysql_stmt_sqlstate"};
inline constinit const MariaFunction<decltype(::mysql_thread_id)> mysql_thread_id{
    "mysql_thread_id"};
inline constinit const MariaFunction<decltype(::mysql_use_result)> mysql_use_result{
    "mysql_use_result"};
inline constinit const MariaFunction<decltype(::mysql_warning_count)> mysql_warning_count{
    "mysql_warning_count"};

}  // namespace tessel
