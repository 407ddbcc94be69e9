#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Compares a water account with a plain NumPy calculation and with the zone tables.

    bench/account_check.py build/release/bin/velmora SETTINGS_FOLDER

Works on any project whose whole chain has run. Every sum is made anew from the grids of the output folder and
the polygons of zones and land cover (GDAL's rasterisation, a later feature wins); the zone tables' volumes are taken
back from millimetres a day to inches a month. Prints for each quantity the largest difference of a row and to how many
digits both agree; exits 1 below six digits. Needs python3-numpy and python3-gdal; no part of the tests.
"""
import json
import math
import os
import subprocess
import sys
from collections import defaultdict

import numpy as np
from osgeo import gdal, ogr, osr

gdal.UseExceptions()
ACRE = 4047.0
DAYS = [31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31]
MONTHS = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"]


def velmora(program, folder, *arguments):
    out = subprocess.run([program, "--settings-folder", folder, "--json", *arguments],
                         stdout=subprocess.PIPE, check=True).stdout
    return json.loads(out)


class Grid:
    def __init__(self, folder, name):
        path = os.path.join(folder, name)
        dataset = gdal.Open(path if os.path.exists(path) else path + ".tif")
        band = dataset.GetRasterBand(1)
        self.values = band.ReadAsArray().astype(np.float64)
        self.values[self.values == band.GetNoDataValue()] = np.nan
        self.x, self.cell, _, self.y, _, _ = dataset.GetGeoTransform()
        self.rows, self.columns = self.values.shape
        self.system = dataset.GetProjection()

    def at(self, other):
        """The values at the centres of another grid's cells; a border belongs to the right and lower cell."""
        x = other.x + (np.arange(other.columns) + 0.5) * other.cell
        y = other.y - (np.arange(other.rows) + 0.5) * other.cell
        c = np.floor((x - self.x) / self.cell + 1e-6).astype(int)
        r = np.floor((self.y - y) / self.cell + 1e-6).astype(int)
        values = np.full((other.rows, other.columns), np.nan)
        cs, rs = (c >= 0) & (c < self.columns), (r >= 0) & (r < self.rows)
        values[np.ix_(rs, cs)] = self.values[np.ix_(r[rs], c[cs])]
        return values


def records(path, field, grid):
    """The place of the key of the polygon that contains each cell's centre, -1 for none, and the keys."""
    source = ogr.Open(path if path.endswith(".shp") else path + ".shp")
    layer = source.GetLayer()
    target = osr.SpatialReference(wkt=grid.system)
    target.SetAxisMappingStrategy(osr.OAMS_TRADITIONAL_GIS_ORDER)
    own = layer.GetSpatialRef()
    change = None
    if own is not None and not own.IsSame(target):
        own.SetAxisMappingStrategy(osr.OAMS_TRADITIONAL_GIS_ORDER)
        change = osr.CoordinateTransformation(own, target)
    memory = ogr.GetDriverByName("Memory").CreateDataSource("")
    copy = memory.CreateLayer("keys", target, ogr.wkbPolygon)
    copy.CreateField(ogr.FieldDefn("place", ogr.OFTInteger))
    keys = {}
    for feature in layer:
        key = (feature.GetFieldAsString(field) or "").rstrip()
        shape = feature.GetGeometryRef().Clone()
        if change:
            shape.Transform(change)
        one = ogr.Feature(copy.GetLayerDefn())
        one.SetField("place", keys.setdefault(key, len(keys)))
        one.SetGeometry(shape)
        copy.CreateFeature(one)
    raster = gdal.GetDriverByName("MEM").Create("", grid.columns, grid.rows, 1, gdal.GDT_Int32)
    raster.SetGeoTransform((grid.x, grid.cell, 0, grid.y, 0, -grid.cell))
    raster.SetProjection(grid.system)
    raster.GetRasterBand(1).Fill(-1)
    gdal.RasterizeLayer(raster, [1], copy, options=["ATTRIBUTE=place"])
    return raster.ReadAsArray(), list(keys)


def texts(keys, none, empty):
    return [k if k else empty for k in keys] + [none]


def plain_rows(settings, account):
    """(zone, crop, month) -> quantity -> sum, in acres and acre-feet."""
    folder = settings["OutputWorkspace"]
    tag = "_" + settings["RefETMethod"]
    rows = {}
    for month in account["months"]:
        et = Grid(folder, f"ET_{month}{tag}")
        grid = Grid(folder, f"NIR_{month}")
        if month == account["months"][0]:
            zone_of, zones = records(settings["Zones"], settings["ZoneField"], grid)
            crop_of, crops = records(settings["LandCover"], "Descriptio", grid)
            zone_names = texts(zones, "(outside all zones)", "")
            crop_names = texts(crops, "(no land cover)", "(no crop type)")
            group = (zone_of % len(zone_names)) * len(crop_names) + crop_of % len(crop_names)
            size = len(zone_names) * len(crop_names)
        et, ppt = et.at(grid), Grid(folder, f"PPT_{month}").at(grid)
        efficiency = Grid(folder, "faef_500").at(grid)
        acres = grid.cell ** 2 / ACRE
        both = ~np.isnan(et) & ~np.isnan(ppt)
        effective = 0.8 * ppt
        net = np.maximum(et - effective, 0)
        water = net / np.where(efficiency == 0, np.nan, efficiency)
        quantities = {
            "land_acres": (np.ones_like(et), 12),
            "land_with_crop_et_acres": (np.where(np.isnan(et), np.nan, 1), 12),
            "crop_et_acft": (et, 1),
            "precipitation_acft": (np.where(both, ppt, np.nan), 1),
            "effective_precipitation_acft": (np.where(both, effective, np.nan), 1),
            "surplus_acft": (np.where(both, np.maximum(effective - et, 0), np.nan), 1),
            "net_requirement_acft": (net, 1),
            "net_requirement_without_efficiency_acft": (np.where(np.isnan(water), net, np.nan), 1),
            "water_requirement_acft": (water, 1),
        }
        for name, (values, inches) in quantities.items():
            there = ~np.isnan(values)
            sums = np.bincount(group[there], weights=values[there], minlength=size)
            for place in np.unique(group):
                key = (zone_names[place // len(crop_names)], crop_names[place % len(crop_names)], month)
                rows.setdefault(key, {})[name] = sums[place] * acres * inches / 12
    return rows


def digits(difference):
    return 16.0 if difference == 0 else min(16.0, -math.log10(difference))


def report(name, pairs):
    """Largest difference of two figures, of the larger figure and of the largest of all."""
    pairs = list(pairs)
    largest = max((max(abs(a), abs(b)) for a, b in pairs), default=0)
    worst = max((abs(a - b) / max(abs(a), abs(b), 1e-9 * largest) for a, b in pairs if a != b), default=0)
    print(f"{name:<52}{len(pairs):>7} figures  {worst:9.1e}  {digits(worst):4.1f} digits")
    return worst


def table_rows(folder, name):
    path = os.path.join(folder, name + ".dbf")
    if not os.path.exists(path):
        return {}
    rows = defaultdict(float)
    table = ogr.Open(path)
    for row in table.GetLayer():
        rows[row.GetField("ZoneUnit").rstrip(), int(row.GetField("Month"))] += row.GetField(name[-3:] + "_V_acft")
    return rows


def main():
    program, folder = sys.argv[1:3]
    settings = velmora(program, folder, "settings", "show")
    account = velmora(program, folder, "account", "--by", "zone,crop,month")
    year = int(settings["Year"])
    rows = plain_rows(settings, account)
    found = {(r["zone"], r["crop"], r["month"]): r for r in account["rows"]}
    cells = {k: v for k, v in rows.items() if v["land_acres"] > 0}
    if set(cells) != set(found):
        sys.exit(f"rows differ: {set(cells) ^ set(found)}")
    worst = 0
    print("Account against NumPy, rows of zone, crop and month")
    for name in next(iter(rows.values())):
        worst = max(worst, report(name, ((cells[k][name], found[k][name] or 0) for k in cells)))
    print("\nZone tables, from millimetres a day to inches a month, against NumPy, rows of zone and month")
    for table, name in (("StatCET", "crop_et_acft"), ("StatNIR", "net_requirement_acft"),
                        ("StatIRR", "water_requirement_acft")):
        volumes = table_rows(settings["OutputWorkspace"], table)
        plain = defaultdict(float)
        for (zone, _, month), sums in rows.items():
            if zone != "(outside all zones)":
                plain[zone[:25].rstrip(), MONTHS.index(month) + 1] += sums[name]
        pairs = []
        for zone, month in set(plain) | set(volumes):
            days = 29 if month == 2 and year % 4 == 0 else DAYS[month - 1]
            pairs.append((volumes.get((zone, month), 0) / (days / 25.4), plain.get((zone, month), 0)))
        worst = max(worst, report(table, pairs))
    print("\nWhat the account says is left over of its identities, of their totals")
    for residual in account["residuals"]:
        print(f"{residual['identity'][:90]:<92}{residual['relative']:9.1e}")
        worst = max(worst, residual["relative"])
    sys.exit(0 if worst < 1e-6 else 1)


if __name__ == "__main__":
    main()
