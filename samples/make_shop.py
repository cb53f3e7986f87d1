#!/usr/bin/env python3
"""Writes the sample shop database: customers, orders, products with pictures, a view.

    make_shop.py --out shop.db              the shop, a few thousand rows
    make_shop.py --out big.db --rows N      the shop and a table "measurements" of N rows

The same arguments always give the same rows. The file appears whole or not at all: it is written
beside its final place and renamed.

Exact decimals. SQLite gives a column declared DECIMAL the affinity NUMERIC and turns the text
'12.50' into the floating number 12.5. Two ways out are used here:
 * Prices and the like are DECIMAL(12,2), so that they compare and add up as numbers, and no amount
   ends in a zero: a number of this size is read back as exactly the digits it was written with.
 * Where more digits count than a floating number holds (Exchange Rates, measurements), the column
   is declared DECIMAL TEXT(28,12): the word TEXT gives it text affinity, and every digit stays,
   trailing zeros too. To compare such a column as a number, cast it.
"""
import argparse
import datetime
import os
import random
import sqlite3
import struct
import sys
import tempfile
import zlib

SCHEMA = """
create table Customers (
  CustomerID integer primary key autoincrement,
  Name varchar(80) not null,
  City varchar(60),
  Country varchar(40),
  Email varchar(120) unique,
  Birthday date,
  Newsletter boolean not null default 0,
  CreditLimit decimal(12,2),
  Notes text
);
create table Categories (
  CategoryID integer primary key,
  Name varchar(40) not null unique,
  Description text
);
create table Products (
  ProductID integer primary key autoincrement,
  CategoryID integer not null references Categories(CategoryID),
  Name varchar(80) not null,
  "Unit Price" decimal(12,2) not null,
  WeightKg double,
  InStock integer not null default 0,
  Discontinued boolean not null default 0,
  Picture blob,
  Picture_FileName varchar(60)
);
create table Orders (
  OrderID integer primary key autoincrement,
  CustomerID integer not null references Customers(CustomerID) on delete cascade,
  OrderDate date not null,
  PlacedAt timestamp not null,
  ShippedAt timestamp,
  Freight decimal(12,2),
  Paid boolean not null default 0,
  Remark text
);
create table "Order Lines" (
  OrderID integer not null references Orders(OrderID) on delete cascade,
  LineNo integer not null,
  ProductID integer not null references Products(ProductID),
  Quantity integer not null check (Quantity > 0),
  "Unit Price" decimal(12,2) not null,
  Discount real not null default 0,
  primary key (OrderID, LineNo)
);
create table "Exchange Rates" (
  Currency char(3) not null,
  Day date not null,
  Rate decimal text(28,12) not null,
  primary key (Currency, Day)
) without rowid;
create index CustomersByCity on Customers (Country, City);
create index OrdersByCustomer on Orders (CustomerID, OrderDate);
create index LinesByProduct on "Order Lines" (ProductID);
create index ProductsByCategory on Products (CategoryID, Name);
create view OrderTotals as
  select o.OrderID, c.Name as Customer, o.OrderDate, count(l.LineNo) as Lines,
         round(sum(l.Quantity * l."Unit Price" * (1 - l.Discount)), 2) as Total
  from Orders o
  join Customers c on c.CustomerID = o.CustomerID
  left join "Order Lines" l on l.OrderID = o.OrderID
  group by o.OrderID;
"""

MEASUREMENTS = """
create table measurements (
  id integer primary key,
  station varchar(20) not null,
  city varchar(20) not null,
  unit varchar(8) not null,
  reading real not null,
  samples integer not null,
  taken timestamp not null,
  note text,
  valid boolean not null,
  calibration decimal text(18,6) not null
)
"""

GIVEN = ["Anna", "Jürgen", "Zoë", "François", "Łucja", "Søren", "Åsa", "Γιώργος", "Ελένη", "Дмитрий",
         "Ольга", "小明", "さくら", "지우", "Mary", "José", "Nuño", "Ümit", "Dvořák", "Éloïse"]
FAMILY = ["Müller", "Weiß", "O'Brien", "Nguyễn", "García", "Παπαδόπουλος", "Иванова", "王", "田中", "김",
          "Håkansson", "Smith", "Żółć", "D'Angelo", "Çelik", "Öztürk", "van den Berg", "Kovács"]
PLACES = [("Köln", "Germany"), ("Zürich", "Switzerland"), ("Αθήνα", "Greece"), ("Москва", "Russia"),
          ("東京", "Japan"), ("서울", "South Korea"), ("São Paulo", "Brazil"), ("Kraków", "Poland"),
          ("Göteborg", "Sweden"), ("Dublin", "Ireland"), ("Montréal", "Canada"), ("北京", "China")]
CATEGORIES = [(1, "Tiles", "Glazed, unglazed and glass"), (2, "Grout", None),
              (3, "Tools", "Cutters, trowels, nippers"), (4, "Kits", "Complete sets for beginners 🎨"),
              (5, "Books", "Patterns & history")]
COLOURS = ["Crimson", "Amber", "Türkis", "Olive", "Indigo", "Карминовый", "翡翠", "Ivory", "Πορφυρό", "Slate"]
THINGS = {1: ["Square", "Hexagon", "Pebble", "Border"], 2: ["Fine", "Coarse", "Epoxy"],
          3: ["Nipper", "Trowel", "Cutter"], 4: ["Star", "Fish", "Labyrinth"], 5: ["Handbook", "Atlas"]}
NOTES = ["Bitte nach 18 Uhr klingeln", "Regular customer ⭐", "Позвонить заранее", "Line one\nline two",
         "Quote: 'it's fine' \"twice\"", "  leading and trailing blanks  ", "100 % wool & <b>not bold</b>",
         "電話で確認", "Tab\there", "Ends with a backslash \\"]
WORDS = "the sensor was cleaned and set back after frost wind rain straße größer δείκτης норма 晴れ ☀ ok".split()
FIRST_DAY = datetime.date(2021, 1, 4)
DAYS = 1400
SEED = 20240117


def amount(rng, low, high):
    """A price as text: two places, the last one never a zero."""
    return "%d.%d%d" % (rng.randrange(low, high), rng.randrange(10), rng.choice((5, 9)))


def sometimes_null(rng, value, share=0.15):
    return None if rng.random() < share else value


def png(width, height, pixels):
    """A true-colour PNG of rows of (red, green, blue)."""
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))
    raw = b"".join(b"\0" + bytes(v for pixel in row for v in pixel) for row in pixels)
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 9)) +
            chunk(b"IEND", b""))


def mosaic(rng):
    """A picture of 6 x 6 tiles in shades of one colour, mirrored left to right."""
    tiles, side = 6, 10
    base = [rng.randrange(40, 216) for _ in range(3)]
    shades = [tuple(max(0, min(255, c + rng.randrange(-40, 41))) for c in base) for _ in range(5)]
    half = [[rng.choice(shades) for _ in range(tiles // 2)] for _ in range(tiles)]
    grid = [row + row[::-1] for row in half]
    joint = (236, 232, 224)
    size = tiles * side
    return png(size, size, [[joint if x % side == 0 or y % side == 0 else grid[y // side][x // side]
                             for x in range(size)] for y in range(size)])


def customers(rng, count):
    for number in range(1, count + 1):
        city, country = rng.choice(PLACES)
        birthday = datetime.date(1940, 1, 1) + datetime.timedelta(days=rng.randrange(24000))
        yield (number, "%s %s" % (rng.choice(GIVEN), rng.choice(FAMILY)), sometimes_null(rng, city, 0.05),
               country, sometimes_null(rng, "customer%d@example.com" % number, 0.1),
               sometimes_null(rng, birthday.isoformat(), 0.3), rng.randrange(2),
               sometimes_null(rng, amount(rng, 100, 20000)),
               sometimes_null(rng, rng.choice(NOTES), 0.6))


def products(rng):
    number = 0
    for category, things in THINGS.items():
        for thing in things:
            for colour in COLOURS:
                number += 1
                pictured = rng.random() < 0.85
                picture = mosaic(rng)
                file_name = "%s-%s.png" % (thing.lower(), number)
                yield (number, category, "%s %s" % (colour, thing), amount(rng, 1, 180),
                       sometimes_null(rng, round(rng.uniform(0.05, 25), 3)), rng.randrange(500),
                       int(rng.random() < 0.1), picture if pictured else None,
                       file_name if pictured else None)


def orders(rng, count, customer_count):
    for number in range(1, count + 1):
        placed = datetime.datetime.combine(
            FIRST_DAY + datetime.timedelta(days=number * DAYS // count),
            datetime.time(rng.randrange(7, 22), rng.randrange(60), rng.randrange(60), rng.randrange(1000) * 1000))
        shipped = placed + datetime.timedelta(hours=rng.randrange(4, 200))
        yield (number, rng.randrange(1, customer_count + 1), placed.date().isoformat(),
               placed.isoformat(" ", "milliseconds"),
               sometimes_null(rng, shipped.replace(microsecond=0).isoformat(" ")),
               sometimes_null(rng, amount(rng, 3, 60)), int(rng.random() < 0.9),
               sometimes_null(rng, rng.choice(NOTES), 0.8))


def order_lines(rng, order_count, prices):
    for order in range(1, order_count + 1):
        for line in range(1, rng.randrange(1, 6) + 1):
            product = rng.randrange(1, len(prices) + 1)
            yield (order, line, product, rng.randrange(1, 20), prices[product - 1],
                   rng.choice((0, 0, 0, 0.05, 0.1)))


def rates(rng):
    for currency in ("CHF", "GBP", "JPY", "USD"):
        for month in range(1, 13):
            yield (currency, "2024-%02d-01" % month,
                   "%d.%012d" % (rng.randrange(1, 200), rng.randrange(10 ** 12)))


def measurements(rng, count):
    stations = ["ST-%04d" % n for n in range(500)]
    cities = [city for city, _ in PLACES]
    units = ["°C", "hPa", "m/s", "%"]
    notes = [note(rng) for _ in range(4000)]
    start = datetime.datetime(2023, 1, 1)
    days = [(start + datetime.timedelta(days=n)).strftime("%Y-%m-%d ") for n in range(730)]
    times = ["%02d:%02d:%02d" % (n // 60 % 24, n % 60, n * 7 % 60) for n in range(1440)]
    calibrations = ["%d.%06d" % (rng.randrange(-500, 500), rng.randrange(10 ** 6)) for _ in range(5000)]
    draw = rng.random
    for number in range(1, count + 1):
        yield (number, stations[int(draw() * 500)], cities[number % len(cities)], units[number & 3],
               round(draw() * 200 - 60, 3), int(draw() * 100000),
               days[int(draw() * 730)] + times[int(draw() * 1440)], notes[int(draw() * 4000)],
               number % 7 != 0, calibrations[int(draw() * 5000)])


def note(rng):
    """Text of 0 to 60 characters; one in ten is null."""
    if rng.random() < 0.1:
        return None
    text = " ".join(rng.choice(WORDS) for _ in range(12))
    return text[:rng.randrange(61)]


def insert(database, table, columns, rows):
    marks = ",".join("?" * columns)
    database.executemany('insert into "%s" values (%s)' % (table, marks), rows)


def fill(database, row_count):
    rng = random.Random(SEED)
    customer_count, order_count = 400, 2000
    database.executescript(SCHEMA)
    insert(database, "Customers", 9, customers(rng, customer_count))
    insert(database, "Categories", 3, CATEGORIES)
    catalogue = list(products(rng))
    insert(database, "Products", 9, catalogue)
    insert(database, "Orders", 8, orders(rng, order_count, customer_count))
    insert(database, "Order Lines", 6, order_lines(rng, order_count, [row[3] for row in catalogue]))
    insert(database, "Exchange Rates", 3, rates(rng))
    if row_count:
        database.execute(MEASUREMENTS)
        insert(database, "measurements", 10, measurements(rng, row_count))


def write(path, row_count):
    folder = os.path.dirname(os.path.abspath(path))
    handle, temporary = tempfile.mkstemp(prefix=".shop-", suffix=".tmp", dir=folder)
    os.close(handle)
    try:
        database = sqlite3.connect(temporary)
        database.execute("pragma journal_mode = off")
        database.execute("pragma synchronous = off")
        with database:
            fill(database, row_count)
        database.execute("analyze")
        database.commit()
        database.close()
        os.chmod(temporary, 0o644)
        os.replace(temporary, path)
    except BaseException:
        os.unlink(temporary)
        raise


def count(text):
    value = int(text)
    if value < 0:
        raise argparse.ArgumentTypeError("must not be negative")
    return value


def main():
    parser = argparse.ArgumentParser(description="Write the sample shop database.")
    parser.add_argument("--out", required=True, metavar="FILE", help="the SQLite file to write")
    parser.add_argument("--rows", type=count, default=0, metavar="N",
                        help='also make a table "measurements" of N rows (default: none)')
    arguments = parser.parse_args()
    try:
        write(arguments.out, arguments.rows)
    except (OSError, sqlite3.Error) as error:
        sys.exit("make_shop.py: cannot write %s: %s" % (arguments.out, error))


if __name__ == "__main__":
    main()
