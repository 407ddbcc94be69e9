#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The reference ET run of twelve months as a good NumPy pipeline would do it: inverse distance weights
once per block of cells, all 60 surfaces by one matrix product, ASCE Penman-Monteith for grass with soil
heat flux, 72 GeoTIFFs written, two threads. No work database.   usage: chain_numpy.py BASIN OUT"""
import os
os.environ["OMP_NUM_THREADS"] = os.environ["OPENBLAS_NUM_THREADS"] = "1"
import sys
from concurrent.futures import ThreadPoolExecutor
import numpy as np
from osgeo import gdal, ogr

gdal.UseExceptions()
BASIN, OUT = sys.argv[1:3]
os.makedirs(OUT, exist_ok=True)
MONTHS = "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()
PREFIXES = ["TM_", "TN_", "TD_", "SR_", "WS_"]
SIDE_ROWS = 8

source = gdal.Open(BASIN + "/dem")
gt, projection = source.GetGeoTransform(), source.GetProjection()
columns, rows = source.RasterXSize, source.RasterYSize
dem = source.ReadAsArray()

layer_source = ogr.Open(BASIN + "/stations.shp")
layer = layer_source.GetLayer(0)
names, xs, ys, zs = [], [], [], []
for feature in layer:
    names.append(feature.GetField("staname"))
    zs.append(feature.GetField("ELEVATION"))
    point = feature.GetGeometryRef()
    xs.append(point.GetX())
    ys.append(point.GetY())
xs, ys, zs = np.array(xs), np.array(ys), np.array(zs)
table_source = ogr.Open(BASIN + "/weather.dbf")
values = {f.GetField("STN"): [f.GetField(p + m) for p in PREFIXES for m in MONTHS]
          for f in table_source.GetLayer(0)}
V = np.array([values[n] for n in names])

A = np.c_[np.ones(len(zs)), zs]
C = np.linalg.lstsq(A, V[:, :36], rcond=None)[0]
C = np.c_[C, np.zeros((2, 24))]
R = V - A @ C

x = gt[0] + (np.arange(columns) + 0.5) * gt[1]
DX2 = (x[:, None] - xs) ** 2
day_of_year = np.array([16, 46, 75, 105, 136, 166, 197, 228, 258, 289, 319, 350])
days = np.array([31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31.0])
angle = 2 * np.pi * day_of_year / 366
dr, declination = 1 + 0.033 * np.cos(angle), 0.409 * np.sin(angle - 1.39)
previous = [0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10]
following = [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 11]
factor = np.array([0.7] + [0.35] * 10 + [0.7]) / 18


def e0(t):
    return 0.6108 * np.exp(17.27 * t / (t + 237.3))


def block(first, last, weather, result):
    y = gt[3] + (np.arange(first, last) + 0.5) * gt[5]
    n = (last - first) * columns
    d2 = (DX2[None] + ((y[:, None] - ys) ** 2)[:, None]).reshape(n, -1)
    limit = np.partition(d2, 11, axis=1)[:, 11:12]
    np.copyto(d2, np.inf, where=d2 > limit)
    np.reciprocal(d2, out=d2)
    d2 *= (1 / d2.sum(1))[:, None]
    z = dem[first:last].reshape(n).astype(float)
    E = d2 @ R
    E += C[0]
    E += z[:, None] * C[1]
    place = slice(first * columns, last * columns)
    weather[:, place] = E.T
    tx, tn, td, sr, ws = (E[:, 12 * k:12 * k + 12] for k in range(5))
    lat = (y / 110950.0) * np.pi / 180
    w = np.arccos(-np.tan(lat)[:, None] * np.tan(declination))
    Ra = 37.586 * dr * (w * np.sin(lat)[:, None] * np.sin(declination)
                        + np.cos(lat)[:, None] * np.cos(declination) * np.sin(w))
    Ra = np.repeat(Ra, columns, 0)
    gamma = (0.000665 * 101.3 * ((293 - 0.0065 * z) / 293) ** 5.26)[:, None]
    T = (tx + tn) * 0.5
    es = (e0(tx) + e0(tn)) * 0.5
    ea = e0(td)
    q = T + 237.3
    slope = 2504 * np.exp(17.27 * T / q) / (q * q)
    clear = 1.35 * np.clip(sr / ((0.75 + 2e-5 * z)[:, None] * Ra), 0.25, 1) - 0.35
    k1, k2 = tx + 273.16, tn + 273.16
    k1 *= k1
    k1 *= k1
    k2 *= k2
    k2 *= k2
    Rn = 0.77 * sr - 4.901e-9 * 0.5 * clear * (0.34 - 0.14 * np.sqrt(ea)) * (k1 + k2)
    both = tx + tn
    G = factor * (both[:, following] - both[:, previous])
    ET = (0.408 * slope * (Rn - G) + gamma * 900 / (T + 273) * ws * (es - ea)) / (
        slope + gamma * (1 + 0.34 * ws))
    result[:, place] = (ET * days / 25.4).T


def create(name):
    made = gdal.GetDriverByName("GTiff").Create(f"{OUT}/{name}.tif", columns, rows, 1, gdal.GDT_Float32)
    made.SetGeoTransform(gt)
    made.SetProjection(projection)
    return made


outputs = [create(p + m) for p in PREFIXES for m in MONTHS] + [create("RefET_" + m) for m in MONTHS]
weather = np.empty((60, rows * columns), np.float32)
result = np.empty((12, rows * columns), np.float32)
with ThreadPoolExecutor(2) as pool:
    list(pool.map(lambda r: block(r, min(rows, r + SIDE_ROWS), weather, result),
                  range(0, rows, SIDE_ROWS)))

    def write(k):
        data = weather[k] if k < 60 else result[k - 60]
        outputs[k].GetRasterBand(1).WriteArray(data.reshape(rows, columns))
        outputs[k] = None

    list(pool.map(write, range(72)))
