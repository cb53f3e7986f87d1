#include "bench/OrdersSql.h"

namespace tessel::bench {

std::string PostgresOrders(std::int64_t rows) {
  return "create table orders as select n::int as id, 'Customer ' || (n * 7919 % 20000) as "
         "customer,"
         " (array['Aachen', 'Z\u00fcrich', 'S\u00e3o Paulo', 'New York', 'Reykjav\u00edk'])[n % 5 "
         "+ 1] "
         "as"
         " city, (n * 104729 % 1000003) / 100e0::float8 as amount, (n * 31 % 97)::int as quantity,"
         " timestamp '2020-09-13 12:26:40' + n * interval '61 seconds' as placed,"
         " case when n % 10 <> 3 then substr('Please leave the parcel beside the door, "
         "\u6f22\u5b57 or "
         "ring twice', 1, (n * 13 % 61)::int) end as note, n % 2 = 1 as paid,"
         " upper(lpad(to_hex(n * 2654435761 % 4294967296), 8, '0')) as code,"
         " (n % 9 + 1 + (n * 17 % 10000) / 10000.0)::numeric(10,4) as rate"
         " from generate_series(1::bigint, " +
         std::to_string(rows) + ") n";
}

std::string MariaOrders(std::int64_t rows) {
  return "create table orders as select cast(seq as int) as id,"
         " concat('Customer ', seq * 7919 % 20000) as customer,"
         " elt(seq % 5 + 1, 'Aachen', 'Z\u00fcrich', 'S\u00e3o Paulo', 'New York', "
         "'Reykjav\u00edk') as"
         " city, (seq * 104729 % 1000003) / 100e0 as amount, cast(seq * 31 % 97 as int) as "
         "quantity,"
         " timestamp'2020-09-13 12:26:40' + interval seq * 61 second as placed,"
         " if(seq % 10 <> 3, substr('Please leave the parcel beside the door, \u6f22\u5b57 or ring "
         "twice', 1, seq * 13 % 61), null) as note, seq % 2 = 1 as paid,"
         " lpad(hex(seq * 2654435761 % 4294967296), 8, '0') as code,"
         " cast(seq % 9 + 1 + (seq * 17 % 10000) / 10000 as decimal(10,4)) as rate"
         " from seq_1_to_" +
         std::to_string(rows);
}

}  // namespace tessel::bench
